#include "platform/session/InstanceLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace lumenfold {

tl::expected<InstanceLock, InstanceLock::Failure> InstanceLock::acquire(const QString &path)
{
    // Programs that are started from here must not keep the lock, hence O_CLOEXEC. The file itself stays when the lock
    // goes: whoever removed it could remove one that a third process has just locked.
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (descriptor < 0) {
        return tl::unexpected(Failure::unavailable);
    }
    InstanceLock lock(descriptor);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != geteuid()) {
        return tl::unexpected(Failure::unavailable);
    }
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        return tl::unexpected(errno == EWOULDBLOCK ? Failure::taken : Failure::unavailable);
    }
    return lock;
}

QString InstanceLock::standardPath()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime) && QFileInfo(runtime).isDir()) {
        return runtime + QStringLiteral("/lumenfold.lock");
    }
    return QDir::tempPath() + QStringLiteral("/lumenfold-%1.lock").arg(geteuid());
}

InstanceLock::InstanceLock(InstanceLock &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

InstanceLock &InstanceLock::operator=(InstanceLock &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

InstanceLock::~InstanceLock()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

} // namespace lumenfold
