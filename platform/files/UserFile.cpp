#include "platform/files/UserFile.h"

#include "platform/files/FileContents.h"
#include "platform/image/EncodingPool.h"

#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QUuid>

#include <filesystem>
#include <system_error>

namespace lumenfold {
namespace {

/// In the same folder, hidden, and nobody else's.
QString scratchFor(const QFileInfo &target)
{
    return target.path() + QStringLiteral("/.") + QUuid::createUuid().toString(QUuid::WithoutBraces) +
           QStringLiteral(".part");
}

/// A disk that fills up takes the first part of the bytes without complaint; only the attempt to write the rest tells
/// the reason.
bool writeAll(QFile &file, QByteArrayView bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 count = file.write(bytes.data() + written, bytes.size() - written);
        if (count < 0) {
            return false;
        }
        written += count;
    }
    return true;
}

} // namespace

tl::expected<void, QString> writeUserFile(const QString &path, QByteArrayView bytes)
{
    QFile file(scratchFor(QFileInfo(path)));
    // Without the toolkit's buffer, which would copy everything and hide what the disk says.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return tl::unexpected(file.errorString());
    }
    QString reason = writeAll(file, bytes) ? QString() : file.errorString();
    file.close();
    if (reason.isEmpty() && file.error() != QFileDevice::NoError) {
        // A disk in the network says only now that it is full.
        reason = file.errorString();
    }
    if (!reason.isEmpty()) {
        file.remove();
        return tl::unexpected(reason);
    }
    std::error_code error;
    std::filesystem::rename(file.filesystemFileName(), QFileInfo(path).filesystemFilePath(), error);
    if (error) {
        file.remove();
        return tl::unexpected(QString::fromLocal8Bit(error.message().c_str()));
    }
    backgroundPool().start([path] {
        syncFiles({path}, [] {});
        syncFolder(QFileInfo(path).path());
    });
    return {};
}

} // namespace lumenfold
