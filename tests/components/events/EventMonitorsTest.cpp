#include "platform/events/X11EventMonitors.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

constexpr std::uint32_t moves = eventMask(PointerEventType::mouseMoved);
constexpr std::uint32_t scrolls = eventMask(PointerEventType::scrollWheel);

class EventMonitorsTest : public ::testing::Test {
protected:
    EventMonitorsTest() { m_pointer.moveTo({5, 5}); }

    [[nodiscard]] static EventMonitors::Handler into(std::vector<PointerEvent> &events)
    {
        return [&events](const PointerEvent &event) { events.push_back(event); };
    }
    void watch(std::uint32_t mask)
    {
        m_global = m_monitors->addGlobalMonitor(mask, into(m_globalEvents));
        m_local = m_monitors->addLocalMonitor(mask, into(m_localEvents));
        settle();
    }
    void settle() const
    {
        for (int round = 0; round < 3; ++round) {
            QApplication::processEvents();
            QApplication::sync();
            guiTestServer().connection().sync();
        }
        QApplication::processEvents();
    }
    [[nodiscard]] static int scale() { return static_cast<int>(qApp->devicePixelRatio()); }
    [[nodiscard]] static Point pointsOf(QPoint pixel)
    {
        return {static_cast<double>(pixel.x()) / scale(),
                static_cast<double>(guiTestServer().size().height() - pixel.y()) / scale()};
    }
    /// A window of this program, without and with a window manager's frame around it.
    [[nodiscard]] static std::unique_ptr<QWidget> ownWindow(const QRect &pixels, Qt::WindowFlags flags)
    {
        auto window = std::make_unique<QWidget>(nullptr, flags);
        window->setGeometry(QRect(pixels.topLeft() / scale(), pixels.size() / scale()));
        window->show();
        EXPECT_TRUE(waitFor([&] { return window->isVisible() && window->windowHandle()->isExposed(); }));
        return window;
    }
    [[nodiscard]] static QPoint centreOf(const QWidget &window)
    {
        return window.mapToGlobal(window.rect().center()) * scale();
    }

    Pointer m_pointer{guiTestServer().display()};
    std::unique_ptr<x11::X11Connection> m_connection = x11::X11Connection::open();
    X11Screens m_screens{*m_connection};
    std::unique_ptr<X11EventMonitors> m_monitors = std::make_unique<X11EventMonitors>(*m_connection, m_screens);
    std::unique_ptr<EventMonitor> m_global;
    std::unique_ptr<EventMonitor> m_local;
    std::vector<PointerEvent> m_globalEvents;
    std::vector<PointerEvent> m_localEvents;
};

TEST_F(EventMonitorsTest, movesOverAnotherProgramReachTheGlobalMonitorWithTheirPlace)
{
    const TestWindow window(guiTestServer(), {.frame = {100, 100, 400, 300}});
    watch(moves);
    m_pointer.moveTo({250, 201});
    ASSERT_TRUE(waitFor([&] { return !m_globalEvents.empty(); }));
    EXPECT_EQ(m_globalEvents.back().type, PointerEventType::mouseMoved);
    EXPECT_EQ(m_globalEvents.back().location, pointsOf({250, 201}));
    EXPECT_THAT(m_localEvents, IsEmpty());
}

TEST_F(EventMonitorsTest, movesOverAnOwnWindowReachTheLocalMonitor)
{
    const auto window = ownWindow({100, 100, 400, 300}, Qt::X11BypassWindowManagerHint);
    watch(moves);
    m_pointer.moveTo(centreOf(*window));
    ASSERT_TRUE(waitFor([&] { return !m_localEvents.empty(); }));
    EXPECT_EQ(m_localEvents.back().location, pointsOf(centreOf(*window)));
    EXPECT_THAT(m_globalEvents, IsEmpty());
}

TEST_F(EventMonitorsTest, anOwnWindowInAFrameIsOwn)
{
    const WindowManager windowManager(guiTestServer(), WindowManagerKind::openbox);
    const auto window = ownWindow({100, 100, 400, 300}, Qt::Window);
    settle();
    watch(moves);
    m_pointer.moveTo(centreOf(*window));
    ASSERT_TRUE(waitFor([&] { return !m_localEvents.empty(); }));
    m_localEvents.clear();
    m_globalEvents.clear();
    // Another program's window in front of it.
    const TestWindow other(guiTestServer(), {.frame = QRect(centreOf(*window) - QPoint(60, 60), QSize(200, 200)),
                                             .kind = WindowKind::overrideRedirect});
    m_pointer.moveTo(other.frame().center());
    ASSERT_TRUE(waitFor([&] { return !m_globalEvents.empty(); }));
    EXPECT_THAT(m_localEvents, IsEmpty());
}

TEST_F(EventMonitorsTest, wheelNotchesReachTheMonitorAndTheWindow)
{
    TestWindow window(guiTestServer(), {.frame = {100, 100, 400, 300}});
    m_pointer.moveTo({250, 200});
    watch(scrolls);
    window.forgetInput();
    for (const Button direction : {Button::scrollUp, Button::scrollDown, Button::scrollLeft, Button::scrollRight}) {
        m_pointer.scroll(direction);
    }
    EXPECT_TRUE(waitFor([&] { return m_globalEvents.size() == 4; }));
    settle();
    ASSERT_EQ(m_globalEvents.size(), 4U);
    const auto deltas = [&](std::size_t index) {
        return ScrollDelta{m_globalEvents[index].scrollingDeltaX, m_globalEvents[index].scrollingDeltaY};
    };
    EXPECT_EQ(deltas(0), (ScrollDelta{.y = pointsPerNotch}));
    EXPECT_EQ(deltas(1), (ScrollDelta{.y = -pointsPerNotch}));
    EXPECT_EQ(deltas(2), (ScrollDelta{.x = pointsPerNotch}));
    EXPECT_EQ(deltas(3), (ScrollDelta{.x = -pointsPerNotch}));
    for (const PointerEvent &event : m_globalEvents) {
        EXPECT_EQ(event.type, PointerEventType::scrollWheel);
        EXPECT_EQ(event.location, pointsOf({250, 200}));
        EXPECT_EQ(event.phase, GesturePhase::none);
        EXPECT_EQ(event.momentumPhase, GesturePhase::none);
    }
    EXPECT_LE(m_globalEvents.front().timestamp, m_globalEvents.back().timestamp);
    EXPECT_GT(m_globalEvents.front().timestamp, 0);
    EXPECT_EQ(window.buttonPresses().size(), 4);
    EXPECT_THAT(m_localEvents, IsEmpty());
}

TEST_F(EventMonitorsTest, aMonitorSeesOnlyWhatItAskedFor)
{
    const TestWindow window(guiTestServer(), {.frame = {100, 100, 400, 300}});
    std::vector<PointerEvent> scrollEvents;
    const auto scrollMonitor = m_monitors->addGlobalMonitor(scrolls, into(scrollEvents));
    watch(moves);
    m_pointer.moveTo({250, 200});
    m_pointer.scroll(Button::scrollDown);
    EXPECT_TRUE(waitFor([&] { return !scrollEvents.empty() && !m_globalEvents.empty(); }));
    settle();
    EXPECT_EQ(scrollEvents.size(), 1U);
    for (const PointerEvent &event : m_globalEvents) {
        EXPECT_EQ(event.type, PointerEventType::mouseMoved);
    }
}

TEST_F(EventMonitorsTest, manyMovesOfOneTurnAreOneEvent)
{
    watch(moves);
    for (int step = 0; step < 50; ++step) {
        m_pointer.moveTo({200 + step, 200});
    }
    ASSERT_TRUE(waitFor([&] { return !m_globalEvents.empty(); }));
    settle();
    EXPECT_LT(m_globalEvents.size(), 5U);
    EXPECT_EQ(m_globalEvents.back().location, pointsOf({249, 200}));
}

TEST_F(EventMonitorsTest, movingWithAButtonHeldIsNotMoving)
{
    const TestWindow window(guiTestServer(), {.frame = {100, 100, 400, 300}});
    m_pointer.moveTo({200, 200});
    watch(moves);
    m_pointer.down();
    m_pointer.moveTo({300, 300});
    settle();
    EXPECT_THAT(m_globalEvents, IsEmpty());
    m_pointer.up();
    m_pointer.moveTo({301, 300});
    ASSERT_TRUE(waitFor([&] { return !m_globalEvents.empty(); }));
}

TEST_F(EventMonitorsTest, nothingComesAfterRemoval)
{
    watch(moves | scrolls);
    m_pointer.moveTo({300, 300});
    ASSERT_TRUE(waitFor([&] { return !m_globalEvents.empty(); }));
    m_pointer.moveTo({310, 300});
    m_pointer.scroll(Button::scrollDown);
    guiTestServer().connection().sync();
    m_global.reset();
    m_local.reset();
    m_globalEvents.clear();
    settle();
    m_pointer.moveTo({320, 300});
    settle();
    EXPECT_THAT(m_globalEvents, IsEmpty());
    EXPECT_THAT(m_localEvents, IsEmpty());
}

TEST_F(EventMonitorsTest, aHandlerMayRemoveMonitorsAndTheirMaker)
{
    watch(moves);
    std::vector<PointerEvent> later;
    std::unique_ptr<EventMonitor> last;
    const auto first = m_monitors->addGlobalMonitor(moves, [&](const PointerEvent &) {
        last.reset();
        m_monitors.reset();
    });
    last = m_monitors->addGlobalMonitor(moves, into(later));
    m_pointer.moveTo({300, 300});
    EXPECT_TRUE(waitFor([&] { return m_monitors == nullptr; }));
    settle();
    EXPECT_THAT(later, IsEmpty());
}

TEST_F(EventMonitorsTest, nothingWakesTheProgramWithoutAMonitor)
{
    watch(moves | scrolls);
    m_global.reset();
    m_local.reset();
    settle();
    int wakeUps = 0;
    const auto counting = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                                           QAbstractEventDispatcher::instance(), [&] { ++wakeUps; });
    for (int step = 0; step < 20; ++step) {
        m_pointer.moveTo({300 + step, 300});
    }
    QEventLoop loop;
    QTimer::singleShot(200ms, &loop, &QEventLoop::quit);
    loop.exec();
    QObject::disconnect(counting);
    EXPECT_LE(wakeUps, 3);
}

} // namespace
} // namespace lumenfold::test
