#include "platform/files/XdgFileManager.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace lumenfold {
namespace {

std::optional<QString> absolute(const QString &path)
{
    return QDir::isAbsolutePath(path) ? std::optional(QDir::cleanPath(path)) : std::nullopt;
}

} // namespace

std::optional<QString> XdgFileManager::picturesDirectory() const
{
    const QString path = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    if (!QDir::isAbsolutePath(path) || path == homeDirectory()) {
        return std::nullopt;
    }
    return path;
}

std::optional<QString> XdgFileManager::applicationSupportDirectory() const
{
    return absolute(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

std::optional<QString> XdgFileManager::cachesDirectory() const
{
    return absolute(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation));
}

QString XdgFileManager::homeDirectory() const
{
    return QDir::homePath();
}

bool XdgFileManager::isDirectory(const QString &path) const
{
    return !path.isEmpty() && QFileInfo(path).isDir();
}

} // namespace lumenfold
