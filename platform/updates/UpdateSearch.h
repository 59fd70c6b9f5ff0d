#pragma once

#include "platform/updates/StandardUpdaterController.h"

#include <tl/expected.hpp>

#include <QByteArray>

#include <optional>

/// What a feed has for this program on this system.
namespace lumenfold {

/// Why a check for updates could not be made.
enum class UpdateCheckError {
    /// No server, no answer, or one that is no feed at all.
    unreachable,
    /// The feed is not signed with the key that updates are signed with, or the server is not who it says it is.
    untrusted,
    /// A genuine feed that is broken.
    unreadable,
    /// This program was built without a key to tell genuine feeds by.
    withoutKey,
};

struct UpdateTerms {
    /// Ed25519, 32 bytes; empty when the program was built without one.
    QByteArray publicKey{};
    /// The version that runs.
    QString version{};
    /// Of the C library that the program runs on.
    QString systemVersion{};
};

/// The newest version in the feed that is newer than the running one and runs on this system, if there is one. A
/// running version that is no version is older than everything.
[[nodiscard]] tl::expected<std::optional<AvailableUpdate>, UpdateCheckError> updateIn(const QByteArray &feed,
                                                                                      const UpdateTerms &terms);

/// The version of the C library, which decides what a program can be run on.
[[nodiscard]] QString systemVersion();

} // namespace lumenfold
