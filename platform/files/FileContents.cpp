#include "platform/files/FileContents.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace lumenfold {
namespace {

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

bool writeNewFile(const QString &path, QByteArrayView bytes)
{
    QFile file(path);
    // Unbuffered, so that a full disk is noticed here and not when the file is closed.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        return false;
    }
    while (!bytes.isEmpty()) {
        const qint64 written = file.write(bytes.data(), bytes.size());
        if (written <= 0) {
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}

bool rename(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(native(from), native(to), error);
    return !error;
}

} // namespace

std::optional<QByteArray> readFile(const QString &path, qint64 maximumBytes)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(maximumBytes + 1);
    if (bytes.size() > maximumBytes || file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    return bytes;
}

bool replaceFile(const QString &path, const QString &scratch, QByteArrayView bytes)
{
    QFile::remove(scratch);
    if (writeNewFile(scratch, bytes) && rename(scratch, path)) {
        return true;
    }
    QFile::remove(scratch);
    return false;
}

bool replaceFileByLink(const QString &path, const QString &scratch, const QString &existing)
{
    QFile::remove(scratch);
    std::error_code error;
    std::filesystem::create_hard_link(native(existing), native(scratch), error);
    const bool isDone = !error && rename(scratch, path);
    // Renaming one name of a file to another name of the same file leaves both.
    QFile::remove(scratch);
    return isDone;
}

bool areSameFile(const QString &path, const QString &other)
{
    std::error_code error;
    return std::filesystem::equivalent(native(path), native(other), error) && !error;
}

} // namespace lumenfold
