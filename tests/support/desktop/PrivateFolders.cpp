#include "tests/support/desktop/PrivateFolders.h"

#include "tests/support/desktop/Wait.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace lumenfold::test {

PrivateFolders::PrivateFolders()
{
    for (const char *name : {"home/Pictures", "config", "data", "cache", "state", "runtime"}) {
        if (!QDir(m_folder.path()).mkpath(QString::fromLatin1(name))) {
            throw std::runtime_error("no private folders: " + m_folder.errorString().toStdString());
        }
    }
    QFile::setPermissions(path("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

PrivateFolders::~PrivateFolders()
{
    // Services that the bus started may still be writing their last words.
    m_folder.setAutoRemove(false);
    (void)waitFor([this] { return QDir(m_folder.path()).removeRecursively(); }, std::chrono::seconds(2));
}

QString PrivateFolders::path(const char *name) const
{
    return m_folder.filePath(QString::fromLatin1(name));
}

void PrivateFolders::applyTo(QProcessEnvironment &environment) const
{
    environment.insert(QStringLiteral("HOME"), home());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), config());
    environment.insert(QStringLiteral("XDG_DATA_HOME"), data());
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), path("cache"));
    environment.insert(QStringLiteral("XDG_STATE_HOME"), path("state"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), path("runtime"));
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        throw std::runtime_error("cannot write " + path.toStdString() + ": " + file.errorString().toStdString());
    }
}

} // namespace lumenfold::test
