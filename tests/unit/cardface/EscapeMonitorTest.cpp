#include "cards/face/EscapeMonitor.h"
#include "tests/support/fakes/FakeHotKeyService.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakeMainQueue.h"

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {
namespace {

constexpr std::uint32_t escape = 53;

class EscapeMonitorTest : public ::testing::Test {
protected:
    void install()
    {
        monitor = std::make_unique<EscapeMonitor>(
            EscapeMonitor::Collaborators{.taps = taps, .hotKeys = hotKeys, .queue = queue}, [this] { ++escapes; });
    }

    int escapes = 0;
    FakeKeyEventTapService taps;
    FakeHotKeyService hotKeys;
    FakeMainQueue queue;
    std::unique_ptr<EscapeMonitor> monitor;
};

TEST_F(EscapeMonitorTest, takesEscapeOnceAndNoOtherKey)
{
    install();
    EXPECT_EQ(taps.press(0), TapDisposition::passOn);
    EXPECT_EQ(taps.press(escape, keyFlags::command), TapDisposition::passOn);
    EXPECT_EQ(taps.press(escape), TapDisposition::swallow);
    EXPECT_EQ(escapes, 0);
    queue.runPosted();
    EXPECT_EQ(escapes, 1);

    EXPECT_EQ(taps.press(escape), TapDisposition::passOn);
    queue.runPosted();
    EXPECT_EQ(escapes, 1);
}

TEST_F(EscapeMonitorTest, holdsTheKeyOnlyWhileItLives)
{
    install();
    ASSERT_EQ(hotKeys.registered().size(), 1U);
    EXPECT_EQ(hotKeys.registered().front().keyCode, escape);
    EXPECT_EQ(hotKeys.handlerInstallations(), 0);

    monitor.reset();
    EXPECT_TRUE(hotKeys.registered().empty());
    EXPECT_EQ(taps.openTaps(), 0U);
}

TEST_F(EscapeMonitorTest, isSilentOnceItIsGone)
{
    install();
    EXPECT_EQ(taps.press(escape), TapDisposition::swallow);
    monitor.reset();
    queue.runPosted();
    EXPECT_EQ(escapes, 0);
}

TEST_F(EscapeMonitorTest, goesOnAfterTheTapWasDisabled)
{
    install();
    taps.disableTaps(KeyEventType::tapDisabledByTimeout);
    EXPECT_EQ(taps.press(escape), TapDisposition::swallow);
}

TEST_F(EscapeMonitorTest, doesWithoutTheKeyWhereItCannotBeHad)
{
    hotKeys.refuse(escape, 0);
    taps.setAvailable(false);
    install();
    EXPECT_EQ(escapes, 0);
}

} // namespace
} // namespace lumenfold::test
