#include "tests/components/events/SmoothPointer.h"

#include "platform/events/X11EventMonitors.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

namespace lumenfold::test {
namespace {

SmoothPointer *thePointer = nullptr;

class SmoothScrollingTest : public ::testing::Test {
protected:
    SmoothScrollingTest()
    {
        QApplication::processEvents();
        waitUntilServerKnows();
    }

    /// The device speaks to the server by a way of its own, which may be quicker than what the monitor asks for.
    void waitUntilServerKnows()
    {
        ASSERT_TRUE(m_connection->reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection->xcb())));
    }

    /// Waits for this many events, and a moment longer for one too many.
    void expectEvents(std::size_t count)
    {
        EXPECT_TRUE(waitFor([&] { return m_events.size() >= count; }));
        EXPECT_TRUE(staysTrue([&] { return m_events.size() == count; }, std::chrono::milliseconds(50)));
    }
    [[nodiscard]] ScrollDelta total() const
    {
        ScrollDelta sum;
        for (const PointerEvent &event : m_events) {
            sum.x += event.scrollingDeltaX;
            sum.y += event.scrollingDeltaY;
        }
        return sum;
    }

    std::unique_ptr<x11::X11Connection> m_connection = x11::X11Connection::open();
    X11Screens m_screens{*m_connection};
    X11EventMonitors m_monitors{*m_connection, m_screens};
    std::vector<PointerEvent> m_events;
    std::unique_ptr<EventMonitor> m_monitor = m_monitors.addGlobalMonitor(
        eventMask(PointerEventType::scrollWheel), [this](const PointerEvent &event) { m_events.push_back(event); });
};

TEST_F(SmoothScrollingTest, partsOfNotchesArePartsOfTheirPoints)
{
    thePointer->scroll(0, 30);
    expectEvents(1);
    EXPECT_EQ(total(), (ScrollDelta{.y = -pointsPerNotch / 4}));
    thePointer->scroll(-60, 0);
    expectEvents(2);
    EXPECT_EQ(total(), (ScrollDelta{.x = pointsPerNotch / 2, .y = -pointsPerNotch / 4}));
}

TEST_F(SmoothScrollingTest, wholeNotchesAreNotCountedAgainAsButtons)
{
    thePointer->scroll(0, -120);
    expectEvents(1);
    EXPECT_EQ(total(), (ScrollDelta{.y = pointsPerNotch}));
    thePointer->scroll(0, 360);
    expectEvents(2);
    EXPECT_EQ(total(), (ScrollDelta{.y = -2 * pointsPerNotch}));
}

TEST_F(SmoothScrollingTest, buttonsThatTheServerMakesSmoothAreCountedOnce)
{
    for (const int button : {4, 5, 5, 7}) {
        thePointer->pressAndRelease(button);
    }
    expectEvents(4);
    EXPECT_EQ(total(), (ScrollDelta{.x = -pointsPerNotch, .y = -pointsPerNotch}));
}

TEST_F(SmoothScrollingTest, nothingJumpsAfterScrollingThatNobodyWatched)
{
    m_monitor.reset();
    waitUntilServerKnows();
    thePointer->scroll(0, 6000);
    // The server deals with a device's events in their order: once the pointer has moved, the scrolling is over.
    const auto before = m_screens.pointerLocation();
    thePointer->move(20, 10);
    ASSERT_TRUE(waitFor([&] { return m_screens.pointerLocation() != before; }));
    std::vector<PointerEvent> events;
    const auto again = m_monitors.addGlobalMonitor(eventMask(PointerEventType::scrollWheel),
                                                   [&](const PointerEvent &event) { events.push_back(event); });
    waitUntilServerKnows();
    thePointer->scroll(0, 12);
    ASSERT_TRUE(waitFor([&] { return !events.empty(); }));
    EXPECT_DOUBLE_EQ(events.front().scrollingDeltaY, -pointsPerNotch / 10);
}

TEST_F(SmoothScrollingTest, movingIsNotScrolling)
{
    thePointer->move(20, 10);
    thePointer->scroll(0, 12);
    expectEvents(1);
}

} // namespace
} // namespace lumenfold::test

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<lumenfold::test::SmoothPointer> pointer;
    try {
        pointer = std::make_unique<lumenfold::test::SmoothPointer>();
    } catch (const std::runtime_error &error) {
        // What ctest takes for "skipped" here, see CMakeLists.txt.
        constexpr int skipped = 77;
        std::fprintf(stderr, "Needs Xorg with its dummy and inputtest drivers: %s\n", error.what());
        return skipped;
    }
    lumenfold::test::thePointer = pointer.get();
    qputenv("DISPLAY", pointer->display());
    QApplication application(argc, argv);
    lumenfold::test::installLogWatch();
    return RUN_ALL_TESTS();
}
