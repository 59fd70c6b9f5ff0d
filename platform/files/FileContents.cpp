#include "platform/files/FileContents.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace lumenfold {
namespace {

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// Closes itself. Some file systems cannot open everything, or sync nothing: then nothing more can be done.
class Descriptor {
public:
    Descriptor(const QString &path, int flags)
        : m_descriptor(::open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }
    ~Descriptor()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int number() const { return m_descriptor; }

private:
    const int m_descriptor;
};

/// False when the disk could not take the bytes after all, which some say only now.
bool sync(int descriptor)
{
    return ::fdatasync(descriptor) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

tl::expected<void, QString> writeNewFile(const QString &path, const FileWriter &write, Sync when, Readers readers)
{
    QFile file(path);
    // Unbuffered, so that a full disk is noticed here and not when the file is closed.
    constexpr auto mode = QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered;
    const bool isOpen =
        readers == Readers::user ? file.open(mode, QFileDevice::ReadOwner | QFileDevice::WriteOwner) : file.open(mode);
    if (!isOpen) {
        return tl::unexpected(file.errorString());
    }
    if (auto written = write(file); !written) {
        return written;
    }
    if (when == Sync::first && !sync(file.handle())) {
        return tl::unexpected(qt_error_string(errno));
    }
    return {};
}

std::error_code rename(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(native(from), native(to), error);
    return error;
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

tl::expected<void, QString> writeBytes(QFile &file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 written = file.write(bytes.data(), bytes.size());
        if (written <= 0) {
            return tl::unexpected(file.errorString());
        }
        bytes = bytes.sliced(written);
    }
    return {};
}

tl::expected<void, QString> copyBytes(QFile &from, qint64 count, QFile &to)
{
    constexpr qint64 largestPiece = 1024 * 1024;
    qint64 done = 0;
    while (done < count) {
        const ssize_t copied =
            copy_file_range(from.handle(), nullptr, to.handle(), nullptr, static_cast<std::size_t>(count - done), 0);
        if (copied <= 0) {
            break;
        }
        done += copied;
    }
    // Not every file system copies to every other; what the target cannot take, it says here.
    if (done > 0 && done < count && !(from.seek(done) && to.seek(done))) {
        return tl::unexpected(from.errorString());
    }
    while (done < count) {
        const QByteArray piece = from.read(std::min(count - done, largestPiece));
        if (piece.isEmpty()) {
            return tl::unexpected(qt_error_string(ESTALE));
        }
        if (auto written = writeBytes(to, piece); !written) {
            return written;
        }
        done += piece.size();
    }
    return {};
}

FileWriter contentsOf(const QString &path)
{
    return [path](QFile &to) -> tl::expected<void, QString> {
        QFile from(path);
        if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            return tl::unexpected(from.errorString());
        }
        return copyBytes(from, from.size(), to);
    };
}

tl::expected<void, QString> replaceFile(const QString &path, const QString &scratch, const FileWriter &write, Sync when,
                                        Readers readers)
{
    QFile::remove(scratch);
    tl::expected<void, QString> result = writeNewFile(scratch, write, when, readers);
    if (result) {
        if (const std::error_code error = rename(scratch, path)) {
            result = tl::unexpected(qt_error_string(error.value()));
        }
    }
    if (!result) {
        QFile::remove(scratch);
    }
    return result;
}

tl::expected<void, QString> replaceFile(const QString &path, const QString &scratch, QByteArrayView bytes, Sync when)
{
    return replaceFile(
        path, scratch, [bytes](QFile &file) { return writeBytes(file, bytes); }, when);
}

bool replaceFileByLink(const QString &path, const QString &scratch, const QString &existing)
{
    QFile::remove(scratch);
    std::error_code error;
    std::filesystem::create_hard_link(native(existing), native(scratch), error);
    const bool isDone = !error && !rename(scratch, path);
    // Renaming one name of a file to another name of the same file leaves both.
    QFile::remove(scratch);
    return isDone;
}

void syncFiles(const QStringList &paths, const std::function<void()> &onProgress)
{
#ifdef SYNC_FILE_RANGE_WRITE
    // All of them set out together, so that the first one's wait is most of the others', too.
    for (const QString &path : paths) {
        const Descriptor file(path, 0);
        (void)::sync_file_range(file.number(), 0, 0, SYNC_FILE_RANGE_WRITE);
    }
#endif
    for (const QString &path : paths) {
        const Descriptor file(path, 0);
        (void)::fdatasync(file.number());
        onProgress();
    }
}

void syncFolder(const QString &path)
{
    const Descriptor folder(path, O_DIRECTORY);
    (void)::fsync(folder.number());
}

bool makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir()) {
        return true;
    }
    const QString parent = QFileInfo(path).path();
    if (parent == path || !makeFolder(parent) || !QDir().mkdir(path)) {
        return false;
    }
    syncFolder(parent);
    return true;
}

bool areSameFile(const QString &path, const QString &other)
{
    std::error_code error;
    return std::filesystem::equivalent(native(path), native(other), error) && !error;
}

} // namespace lumenfold
