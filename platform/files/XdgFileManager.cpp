#include "platform/files/XdgFileManager.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace lumenfold {

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
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir::isAbsolutePath(path) ? std::optional(QDir::cleanPath(path)) : std::nullopt;
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
