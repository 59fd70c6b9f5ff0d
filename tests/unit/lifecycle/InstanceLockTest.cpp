#include "platform/session/InstanceLock.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <optional>

namespace lumenfold::test {
namespace {

class InstanceLockTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("lumenfold.lock")); }

    QTemporaryDir m_folder;
};

TEST_F(InstanceLockTest, IsHeldByOneAtATime)
{
    auto first = InstanceLock::acquire(path());
    ASSERT_TRUE(first);
    EXPECT_EQ(InstanceLock::acquire(path()).error(), InstanceLock::Failure::taken);
    {
        const InstanceLock moved = std::move(*first);
        EXPECT_EQ(InstanceLock::acquire(path()).error(), InstanceLock::Failure::taken);
    }
    EXPECT_TRUE(InstanceLock::acquire(path()));
    EXPECT_EQ(QFileInfo(path()).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

TEST_F(InstanceLockTest, GoesWithAProcessThatIsKilled)
{
    std::array<int, 2> ready{};
    ASSERT_EQ(pipe(ready.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto lock = InstanceLock::acquire(path());
        const char answer = lock ? 'y' : 'n';
        if (write(ready[1], &answer, 1) == 1) {
            pause();
        }
        _exit(1);
    }
    char answer = 0;
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_EQ(InstanceLock::acquire(path()).error(), InstanceLock::Failure::taken);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(InstanceLock::acquire(path()));
    close(ready[0]);
    close(ready[1]);
}

TEST_F(InstanceLockTest, IsNotHandedOnToProgramsThatAreStartedMeanwhile)
{
    std::optional<InstanceLock> lock = std::move(*InstanceLock::acquire(path()));
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sleep", "sleep", "60", nullptr);
        _exit(1);
    }
    // Until the child is another program, it shares the lock.
    const QString childProgram = QStringLiteral("/proc/%1/exe").arg(child);
    while (QFile::symLinkTarget(childProgram) == QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))) {
        usleep(1000);
    }
    lock.reset();
    EXPECT_TRUE(InstanceLock::acquire(path()));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(InstanceLockTest, IsUnavailableWhereItsFileCannotBeTrusted)
{
    EXPECT_EQ(InstanceLock::acquire(m_folder.filePath(QStringLiteral("no/folder"))).error(),
              InstanceLock::Failure::unavailable);
    EXPECT_EQ(InstanceLock::acquire(m_folder.path()).error(), InstanceLock::Failure::unavailable);
    ASSERT_TRUE(QFile::link(QStringLiteral("/etc/hostname"), path()));
    EXPECT_EQ(InstanceLock::acquire(path()).error(), InstanceLock::Failure::unavailable);
}

TEST_F(InstanceLockTest, StandsInTheFolderOfTheSession)
{
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
    EXPECT_EQ(InstanceLock::standardPath(), path());
    for (const char *unusable : {"", "relative", "/no/such/folder"}) {
        qputenv("XDG_RUNTIME_DIR", unusable);
        EXPECT_TRUE(InstanceLock::standardPath().endsWith(QStringLiteral("/lumenfold-%1.lock").arg(geteuid())));
    }
    qputenv("XDG_RUNTIME_DIR", before);
}

} // namespace
} // namespace lumenfold::test
