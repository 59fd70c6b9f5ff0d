#include "platform/sandbox/WebSandbox.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

namespace lumenfold::test {
namespace {

constexpr auto withoutSandbox = "QTWEBENGINE_DISABLE_SANDBOX";

/// What it is for a process of its own after that. An ordinary user's, also where tests run as the superuser.
WebSandbox ofOrdinaryUser(const std::function<void()> &change = [] {})
{
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) {
            std::abort();
        }
        change();
        ::_exit(static_cast<int>(webSandbox()));
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    return static_cast<WebSandbox>(WEXITSTATUS(status));
}

class WebSandboxTest : public ::testing::Test {
protected:
    WebSandboxTest() { qunsetenv(withoutSandbox); }
    ~WebSandboxTest() override
    {
        if (!m_before.isNull()) {
            qputenv(withoutSandbox, m_before);
        }
    }

private:
    const QByteArray m_before = qgetenv(withoutSandbox);
};

TEST_F(WebSandboxTest, TheSuperuserHasNone)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "the superuser's alone";
    }
    EXPECT_EQ(webSandbox(), WebSandbox::superuser);
}

TEST_F(WebSandboxTest, WhoDoesWithoutItIsNotAsked)
{
    qputenv(withoutSandbox, "1");
    EXPECT_EQ(webSandbox(), WebSandbox::available);
}

TEST_F(WebSandboxTest, AnOrdinaryUserHasWhatTheSystemLetsHimMake)
{
    int status = 0;
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) {
            std::abort();
        }
        ::execlp("unshare", "unshare", "--user", "--net", "--pid", "--fork", "true", nullptr);
        ::_exit(2);
    }
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    const bool systemLets = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    EXPECT_EQ(ofOrdinaryUser(), systemLets ? WebSandbox::available : WebSandbox::unavailable);
}

TEST_F(WebSandboxTest, WhereNoProcessCanBeMadeThereIsNone)
{
    EXPECT_EQ(ofOrdinaryUser([] {
                  const rlimit none{};
                  ::setrlimit(RLIMIT_NPROC, &none);
              }),
              WebSandbox::unavailable);
}

} // namespace
} // namespace lumenfold::test
