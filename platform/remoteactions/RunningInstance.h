#pragma once

#include <QByteArray>

#include <chrono>

namespace lumenfold {

namespace remoteActions {
inline constexpr const char *name = "org.lumenfold.LumenFold";
/// The name, as paths are made of names.
inline constexpr const char *path = "/org/lumenfold/LumenFold";
} // namespace remoteActions

/// Asks the program that runs in this session for one of its actions, or tells it, with an empty name, that it was
/// launched once more. True when it has answered; false without a bus, or when nobody answered for as long as
/// `patience`. Needs no toolkit.
bool askRunningInstance(const QByteArray &action, std::chrono::milliseconds patience);

} // namespace lumenfold
