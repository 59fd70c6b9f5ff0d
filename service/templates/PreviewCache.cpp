#include "service/templates/PreviewCache.h"

#include "platform/files/FileContents.h"
#include "service/templates/PreviewDecoder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QUuid>

#include <utility>

namespace lumenfold {

const QString PreviewCache::relativePath = QStringLiteral("LumenFold/template-previews");

PreviewCache::PreviewCache(QString folder) : PreviewCache(std::move(folder), Limits{}) {}

PreviewCache::PreviewCache(QString folder, const Limits &limits) : m_folder(std::move(folder)), m_limits(limits) {}

QString PreviewCache::pathOf(const PreviewKey &key) const
{
    QCryptographicHash digest(QCryptographicHash::Sha256);
    digest.addData(key.address.toUtf8());
    // No address has a line break in it.
    digest.addData("\n");
    digest.addData(key.version.toUtf8());
    return m_folder + u'/' + QString::fromLatin1(digest.result().toHex());
}

std::optional<QByteArray> PreviewCache::find(const PreviewKey &key) const
{
    const QString path = pathOf(key);
    const QDateTime stored = QFileInfo(path).lastModified();
    if (!stored.isValid() || stored.secsTo(QDateTime::currentDateTime()) > m_limits.age.count()) {
        return std::nullopt;
    }
    return readFile(path, maximumPreviewBytes);
}

void PreviewCache::store(const PreviewKey &key, QByteArrayView bytes) const
{
    // What is in the cache says which templates the user has.
    if (!QDir().mkpath(m_folder)) {
        return;
    }
    QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString path = pathOf(key);
    (void)replaceFile(path, path + u'.' + QUuid::createUuid().toString(QUuid::Id128), bytes, Sync::later);
    trim();
}

void PreviewCache::remove(const PreviewKey &key) const
{
    QFile::remove(pathOf(key));
}

void PreviewCache::trim() const
{
    // Newest first. What a killed program left half written is there too, and goes when it is old.
    const QFileInfoList files = QDir(m_folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Time);
    int count = 0;
    qint64 bytes = 0;
    for (const QFileInfo &file : files) {
        ++count;
        bytes += file.size();
        if (count > m_limits.count || bytes > m_limits.bytes) {
            QFile::remove(file.filePath());
        }
    }
}

} // namespace lumenfold
