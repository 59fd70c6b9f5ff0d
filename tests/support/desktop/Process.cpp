#include "tests/support/desktop/Process.h"

#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <vector>

namespace lumenfold::test {
namespace {

constexpr std::chrono::seconds patienceBeforeKilling{5};

std::vector<char *> pointersTo(QList<QByteArray> &strings)
{
    std::vector<char *> pointers;
    for (QByteArray &string : strings) {
        pointers.push_back(string.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

QString pathOf(const QString &program)
{
    if (program.contains(u'/')) {
        return program;
    }
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) {
        throw std::runtime_error("not installed: " + program.toStdString());
    }
    return path;
}

} // namespace

Process::Process(const ProcessOptions &options) : m_logFile(options.logFile)
{
    // Everything that allocates happens before the fork: the test may have other threads, which may hold the heap's
    // lock.
    const QByteArray path = QFile::encodeName(pathOf(options.program));
    QList<QByteArray> arguments{path};
    for (const QString &argument : options.arguments) {
        arguments.append(argument.toLocal8Bit());
    }
    QList<QByteArray> environment;
    for (const QString &variable : options.environment.toStringList()) {
        environment.append(variable.toLocal8Bit());
    }
    const std::vector<char *> argumentPointers = pointersTo(arguments);
    const std::vector<char *> environmentPointers = pointersTo(environment);
    const QByteArray output = m_logFile.isEmpty() ? QByteArrayLiteral("/dev/null") : QFile::encodeName(m_logFile);
    const pid_t test = ::getpid();

    m_pid = ::fork();
    if (m_pid < 0) {
        throw std::runtime_error("fork failed for " + path.toStdString());
    }
    if (m_pid == 0) {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != test) {
            ::_exit(126);
        }
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        const int input = ::open("/dev/null", O_RDONLY);
        const int log = ::open(output.constData(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        ::dup2(input, STDIN_FILENO);
        ::dup2(log, STDOUT_FILENO);
        ::dup2(log, STDERR_FILENO);
        for (const int descriptor : options.inheritedDescriptors) {
            ::fcntl(descriptor, F_SETFD, 0);
        }
        ::execve(path.constData(), argumentPointers.data(), environmentPointers.data());
        ::_exit(127);
    }
    // Both sides make the group, so that it is there whoever comes first.
    ::setpgid(m_pid, m_pid);
    m_pidDescriptor = static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0));
}

Process::~Process()
{
    if (!waitForExit(std::chrono::milliseconds(0))) {
        ::kill(-m_pid, SIGTERM);
        // A stopped program cannot hear SIGTERM.
        ::kill(-m_pid, SIGCONT);
        if (!waitForExit(patienceBeforeKilling)) {
            ::kill(-m_pid, SIGKILL);
            (void)waitForExit(patienceBeforeKilling);
        }
    }
    // What it started and left behind.
    ::kill(-m_pid, SIGKILL);
    ::close(m_pidDescriptor);
}

bool Process::isRunning()
{
    return !waitForExit(std::chrono::milliseconds(0));
}

void Process::sendSignal(int signal) const
{
    if (!m_exit) {
        ::kill(m_pid, signal);
    }
}

std::optional<Process::Exit> Process::waitForExit(std::chrono::milliseconds timeout)
{
    if (m_exit) {
        return m_exit;
    }
    pollfd ended{.fd = m_pidDescriptor, .events = POLLIN, .revents = 0};
    if (::poll(&ended, 1, static_cast<int>(timeout.count())) <= 0) {
        return std::nullopt;
    }
    int status = 0;
    if (::waitpid(m_pid, &status, 0) == m_pid) {
        m_exit = WIFSIGNALED(status) ? Exit{.status = -1, .signal = WTERMSIG(status)}
                                     : Exit{.status = WEXITSTATUS(status), .signal = 0};
    }
    return m_exit;
}

QByteArray Process::log() const
{
    return logAt(m_logFile);
}

QByteArray Process::logAt(const QString &file)
{
    QFile log(file);
    return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
}

} // namespace lumenfold::test
