#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace lumenfold {

/// What the program is asked on its command line: nothing, which starts it, or one of its actions, which launchers name
/// that cannot reach it on the session bus.
struct CommandLine {
    enum class Wish { start, action, help, version, misunderstood };

    Wish wish = Wish::start;
    /// Of the running program's actions, as they are called on the session bus.
    QByteArray action{};

    friend bool operator==(const CommandLine &, const CommandLine &) = default;
};

/// All that can be asked for, in the order in which people read it.
[[nodiscard]] QByteArrayList commandLineActions();

/// Without the name of the program.
[[nodiscard]] CommandLine parseCommandLine(const QByteArrayList &arguments);

/// What --help says.
[[nodiscard]] QByteArray commandLineHelp();

} // namespace lumenfold
