#include "platform/image/PngFile.h"

#include "platform/files/FileContents.h"
#include "platform/image/PngFormat.h"

#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

namespace lumenfold {
namespace {

std::atomic<int> openFiles = 0;

/// A file of so many chunks is no picture, whatever it is.
constexpr int maximumChunks = 100'000;
constexpr qint64 fingerprintedBytes = 64;

} // namespace

class PngFile::OpenCount {
public:
    /// Null when as many files are open as may be.
    static std::unique_ptr<OpenCount> take()
    {
        if (++openFiles > maximumOpenFiles) {
            --openFiles;
            return nullptr;
        }
        return std::unique_ptr<OpenCount>(new OpenCount);
    }
    ~OpenCount() { --openFiles; }
    OpenCount(const OpenCount &) = delete;
    OpenCount &operator=(const OpenCount &) = delete;

private:
    OpenCount() = default;
};

PngFile::PngFile(const QString &path) : m_file(path) {}

PngFile::~PngFile() = default;

std::unique_ptr<PngFile> PngFile::open(const QString &path)
{
    std::unique_ptr<PngFile> file(new PngFile(path));
    // A pipe would keep whoever opens it waiting.
    if (!QFileInfo(path).isFile() || !file->m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return nullptr;
    }
    const std::optional<Identity> identity = identityOf(file->m_file);
    if (!identity) {
        return nullptr;
    }
    file->m_identity = *identity;
    file->m_openCount = OpenCount::take();
    if (!file->m_openCount) {
        file->m_file.close();
    }
    return file;
}

std::optional<PngFile::Identity> PngFile::identityOf(const QFile &file)
{
    struct stat status = {};
    if (fstat(file.handle(), &status) != 0) {
        return std::nullopt;
    }
    return Identity{.device = status.st_dev,
                    .number = status.st_ino,
                    .size = status.st_size,
                    .changedSeconds = status.st_mtim.tv_sec,
                    .changedNanoseconds = status.st_mtim.tv_nsec};
}

template <typename Read>
auto PngFile::reading(Read read)
{
    using Result = decltype(read());
    if (m_openCount) {
        return m_file.seek(0) ? read() : Result();
    }
    if (!QFileInfo(m_file).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return Result();
    }
    Result result = identityOf(m_file) == m_identity ? read() : Result();
    m_file.close();
    return result;
}

QByteArray PngFile::readFirst(qint64 bytes)
{
    return m_contents ? m_contents->first(std::min<qsizetype>(bytes, m_contents->size()))
                      : reading([this, bytes] { return m_file.read(bytes); });
}

QByteArray PngFile::readAll()
{
    return m_contents ? *m_contents : reading([this] { return m_file.readAll(); });
}

tl::expected<void, QString> PngFile::copyTo(QFile &target)
{
    if (m_contents) {
        return writeBytes(target, *m_contents);
    }
    // Another file may have taken its place.
    tl::expected<void, QString> result = tl::unexpected(qt_error_string(ESTALE));
    (void)reading([&] {
        result = copyBytes(m_file, m_identity.size, target);
        return true;
    });
    return result;
}

bool PngFile::isWhole()
{
    if (m_contents || m_identity.size <= maximumProvenBytes) {
        return png::isIntact(readAll());
    }
    return reading([this] { return hasEndChunk(); });
}

bool PngFile::hasEndChunk()
{
    constexpr auto endChunkBytes = static_cast<qint64>(png::chunkOverhead);
    if (m_file.seek(m_identity.size - endChunkBytes) && png::isEndChunk(m_file.read(endChunkBytes))) {
        return true;
    }
    // Something may follow the end.
    auto at = static_cast<qint64>(png::signature.size());
    for (int chunk = 0; chunk < maximumChunks && at + endChunkBytes <= m_identity.size; ++chunk) {
        const QByteArray start = m_file.seek(at) ? m_file.read(endChunkBytes) : QByteArray();
        if (start.size() < endChunkBytes) {
            return false;
        }
        if (png::isEndChunk(start)) {
            return true;
        }
        at += endChunkBytes + png::chunkDataBytes(start);
    }
    return false;
}

std::optional<QByteArray> PngFile::fingerprint()
{
    if (m_contents) {
        return std::nullopt;
    }
    const qint64 bytes = std::min<qint64>(fingerprintedBytes, m_identity.size);
    const QByteArray end =
        reading([this, bytes] { return m_file.seek(m_identity.size - bytes) ? m_file.read(bytes) : QByteArray(); });
    if (end.size() != bytes) {
        return std::nullopt;
    }
    return QByteArray::number(qint64{m_identity.size}) + ' ' + QByteArray::number(qint64{m_identity.changedSeconds}) +
           ' ' + QByteArray::number(qint64{m_identity.changedNanoseconds}) + ' ' + end;
}

void PngFile::hold()
{
    if (m_openCount || m_contents) {
        return;
    }
    m_openCount = OpenCount::take();
    if (!m_openCount) {
        m_contents = readAll();
        return;
    }
    if (!QFileInfo(m_file).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        identityOf(m_file) != m_identity) {
        m_file.close();
        m_openCount.reset();
    }
}

} // namespace lumenfold
