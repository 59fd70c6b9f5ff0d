#pragma once

#include "tests/support/desktop/Desktop.h"
#include "tests/support/desktop/PrivateFolders.h"

#include <QDir>
#include <QFileInfo>

namespace lumenfold::test {

/// Where the program of this desktop has its settings.
[[nodiscard]] inline QString settingsFile(const Desktop &desktop)
{
    return desktop.folders().config() + QStringLiteral("/LumenFold/LumenFold.conf");
}

/// The whole file, as it is to be found by the program.
inline void writeSettings(const Desktop &desktop, const QByteArray &contents)
{
    const QString path = settingsFile(desktop);
    QDir().mkpath(QFileInfo(path).path());
    writeFile(path, contents);
}

} // namespace lumenfold::test
