#include "tests/support/fakes/FakeFileManager.h"

namespace lumenfold::test {

std::optional<QString> FakeFileManager::picturesDirectory() const
{
    return pictures;
}

std::optional<QString> FakeFileManager::applicationSupportDirectory() const
{
    return applicationSupport;
}

std::optional<QString> FakeFileManager::cachesDirectory() const
{
    return caches;
}

QString FakeFileManager::homeDirectory() const
{
    return home;
}

bool FakeFileManager::isDirectory(const QString &path) const
{
    return path == home || path == pictures || directories.contains(path);
}

} // namespace lumenfold::test
