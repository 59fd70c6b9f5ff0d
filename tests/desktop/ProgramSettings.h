#pragma once

#include "tests/support/desktop/Desktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace lumenfold::test {

/// Where the program of this desktop has its settings.
[[nodiscard]] inline QString settingsFile(const Desktop &desktop)
{
    return desktop.folders().config() + QStringLiteral("/LumenFold/LumenFold.conf");
}

/// The whole file, as it is to be found by the program.
inline void writeSettings(const Desktop &desktop, const QByteArray &contents)
{
    QFile file(settingsFile(desktop));
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        throw std::runtime_error("the settings cannot be written");
    }
}

} // namespace lumenfold::test
