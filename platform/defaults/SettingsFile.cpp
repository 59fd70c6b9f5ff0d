#include "platform/defaults/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
/// File systems stamp changes with a clock that stands still for up to 10 ms; this is well above it.
constexpr std::int64_t stampResolution = 100'000'000;
/// A settings file holds a few hundred bytes; whatever is larger than this is none.
constexpr std::int64_t largestSize = 1 << 20;

std::int64_t nanoseconds(const timespec &time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

std::int64_t nowNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now);
}

QString reason(int error)
{
    return QString::fromStdString(std::generic_category().message(error));
}

} // namespace

SettingsFile::SettingsFile(QString path) : m_path(std::move(path)) {}

tl::expected<QByteArray, QString> SettingsFile::read()
{
    const QByteArray path = QFile::encodeName(m_path);
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        m_seen = {};
        if (errno == ENOENT) {
            return QByteArray();
        }
        return tl::unexpected(reason(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(QStringLiteral("Not a file"));
    }
    if (status.st_size > largestSize) {
        return tl::unexpected(QStringLiteral("Too large"));
    }
    const auto fingerprintOf = [](const struct stat &of) {
        return Fingerprint{.device = of.st_dev,
                           .inode = of.st_ino,
                           .size = of.st_size,
                           .modifiedNanoseconds = nanoseconds(of.st_mtim),
                           .changedNanoseconds = nanoseconds(of.st_ctim)};
    };
    if (!m_mayChangeUnseen && fingerprintOf(status) == m_seen) {
        return m_contents;
    }

    // Another file may have taken the place since, so everything is asked again of the one that is open; a pipe must
    // not make the program wait.
    const int descriptor = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        m_seen = {};
        return tl::unexpected(reason(errno));
    }
    QFile file;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        return tl::unexpected(QStringLiteral("Not a file"));
    }
    const std::int64_t readAt = nowNanoseconds();
    const QByteArray contents = file.read(status.st_size);
    if (file.error() != QFileDevice::NoError) {
        m_seen = {};
        return tl::unexpected(file.errorString());
    }
    m_contents = contents;
    m_seen = fingerprintOf(status);
    m_mayChangeUnseen = readAt - m_seen.changedNanoseconds < stampResolution;
    return m_contents;
}

tl::expected<void, QString> SettingsFile::replace(const QByteArray &contents)
{
    const QString directory = QFileInfo(m_path).absolutePath();
    if (!QDir().mkpath(directory)) {
        return tl::unexpected(QStringLiteral("The folder cannot be made"));
    }
    const bool isNew = !QFile::exists(m_path);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        return tl::unexpected(file.errorString());
    }
    if (isNew) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    file.write(contents);
    if (!file.commit()) {
        return tl::unexpected(file.errorString());
    }
    return {};
}

} // namespace lumenfold
