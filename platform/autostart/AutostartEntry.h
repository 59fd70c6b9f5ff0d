#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <functional>

/// The text of an autostart file, which is a desktop entry of the freedesktop specifications.
namespace lumenfold::autostartEntry {

/// The desktop that reads the file.
struct Session {
    /// The names in XDG_CURRENT_DESKTOP.
    QStringList desktops;
    /// Whether there is such a program, by its absolute path or its name.
    std::function<bool(const QString &program)> isInstalled;
};

/// Whether a desktop that finds this file starts what it names. False for what is no desktop entry.
[[nodiscard]] bool starts(QByteArrayView contents, const Session &session);

/// An entry that starts `program`, an absolute path, under this name and with this icon.
[[nodiscard]] QByteArray starting(const QString &program, const QString &name, const QString &icon);

/// An entry that starts nothing, and so takes the place of those of the same file name that the system has.
[[nodiscard]] QByteArray startingNothing(const QString &name);

} // namespace lumenfold::autostartEntry
