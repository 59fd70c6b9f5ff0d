#include "tests/components/windowlist/WindowListTest.h"

#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QWidget>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <ostream>

#include <sys/resource.h>
#include <unistd.h>

namespace lumenfold {

void PrintTo(const WindowBounds &bounds, std::ostream *out)
{
    *out << "(" << bounds.x << ", " << bounds.y << ", " << bounds.width << " x " << bounds.height << ")";
}

} // namespace lumenfold

namespace lumenfold::test {
namespace {

XServer *theServer = nullptr;

constexpr quint32 fromApplication = 1;

using ::testing::ElementsAre;

} // namespace

void WindowListTest::useServer(XServer &server)
{
    theServer = &server;
}

XServer &WindowListTest::server()
{
    return *theServer;
}

WindowListTest::WindowListTest()
    : m_connection(x11::X11Connection::open())
    , m_screens(std::make_unique<X11Screens>(*m_connection))
    , m_list(std::make_unique<X11WindowList>(*m_connection, *m_screens))
{
}

WindowListTest::~WindowListTest() = default;

WindowBounds WindowListTest::boundsOf(const QRect &pixels) const
{
    const double scale = m_screens->main()->backingScale;
    return {pixels.x() / scale, pixels.y() / scale, pixels.width() / scale, pixels.height() / scale};
}

std::optional<WindowInfo> WindowListTest::listedAt(const QRect &pixels) const
{
    const auto windows = listed();
    const auto found = std::ranges::find(windows, std::optional(boundsOf(pixels)), &lumenfold::WindowInfo::bounds);
    return found == windows.end() ? std::nullopt : std::optional(*found);
}

std::vector<QRect> WindowListTest::ordinary() const
{
    const double scale = m_screens->main()->backingScale;
    std::vector<QRect> edges;
    for (const auto &window : listed()) {
        if (window.layer == 0) {
            edges.emplace_back(qRound(window.bounds->x * scale), qRound(window.bounds->y * scale),
                               qRound(window.bounds->width * scale), qRound(window.bounds->height * scale));
        }
    }
    return edges;
}

namespace {

TEST_F(WindowListTest, IsEmptyOnAnEmptyScreen)
{
    EXPECT_TRUE(listed().empty());
}

TEST_F(WindowListTest, GoesFrontToBackWithoutAWindowManager)
{
    const QRect low(100, 100, 400, 300);
    const QRect high(300, 200, 500, 400);
    TestWindow first(server(), {.frame = low});
    const TestWindow second(server(), {.frame = high});
    EXPECT_THAT(ordinary(), ElementsAre(high, low));
    first.raise();
    EXPECT_THAT(ordinary(), ElementsAre(low, high));
}

TEST_F(WindowListTest, TellsMenusFromWindowsWithoutAWindowManager)
{
    const QRect place(300, 200, 120, 300);
    const TestWindow menu(server(), {.frame = place, .kind = WindowKind::overrideRedirect});
    const auto found = listedAt(place);
    ASSERT_TRUE(found);
    EXPECT_NE(found->layer, 0);
    EXPECT_TRUE(ordinary().empty());
}

TEST_F(WindowListTest, CountsTheBorderAndTheShape)
{
    const TestWindow window(server(), {.frame = QRect(100, 100, 400, 300)});
    const std::uint32_t width = 6;
    xcb_configure_window(server().connection().get(), window.id(), XCB_CONFIG_WINDOW_BORDER_WIDTH, &width);
    server().connection().sync();
    EXPECT_THAT(ordinary(), ElementsAre(QRect(100, 100, 412, 312)));
}

TEST_F(WindowListTest, LeavesWindowsBesideTheScreenOut)
{
    const TestWindow helper(server(), {.frame = QRect(-500, 0, 400, 300)});
    const QRect partly(1200, 700, 400, 300);
    const TestWindow window(server(), {.frame = partly});
    EXPECT_THAT(ordinary(), ElementsAre(partly));
}

/// The same with a window manager that frames windows and knows workspaces.
class ManagedWindowListTest : public WindowListTest {
protected:
    /// The frame that the window manager gave a window, root pixels.
    [[nodiscard]] QRect frameAround(const TestWindow &window) const
    {
        const auto extents = server().connection().cardinals(window.id(), "_NET_FRAME_EXTENTS");
        EXPECT_EQ(extents.size(), 4);
        const auto side = [&](qsizetype index) { return static_cast<int>(extents.value(index)); };
        return window.frame().adjusted(-side(0), -side(2), side(1), side(3));
    }

    [[nodiscard]] bool waitForOrdinary(const std::vector<QRect> &expected) const
    {
        return waitFor([&] { return ordinary() == expected; });
    }

    const WindowManager windowManager{server(), WindowManagerKind::openbox};
    const QRect low{100, 100, 400, 300};
    const QRect high{300, 200, 500, 400};
};

TEST_F(ManagedWindowListTest, GoesFrontToBack)
{
    TestWindow first(server(), {.frame = low});
    const TestWindow second(server(), {.frame = high});
    EXPECT_TRUE(waitForOrdinary({high, low}));
    first.raise();
    EXPECT_TRUE(waitForOrdinary({low, high}));
}

TEST_F(ManagedWindowListTest, CountsTheTitleBar)
{
    const TestWindow window(server(), {.frame = low, .decoration = Decoration::ofTheWindowManager});
    ASSERT_TRUE(
        waitFor([&] { return server().connection().cardinals(window.id(), "_NET_FRAME_EXTENTS").size() == 4; }));
    EXPECT_TRUE(waitForOrdinary({frameAround(window)}));
    EXPECT_GT(frameAround(window).height(), low.height());
}

TEST_F(ManagedWindowListTest, LeavesInvisibleBordersOut)
{
    // As programs do it that draw their own title bar and shadow.
    const TestWindow window(server(), {.frame = low});
    server().connection().setCardinals(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 27, 23, 29});
    server().connection().sync();
    EXPECT_TRUE(waitForOrdinary({low.adjusted(26, 23, -27, -29)}));
    server().connection().setCardinals(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {4000000000U, 27, 23, 29});
    server().connection().sync();
    EXPECT_TRUE(waitForOrdinary({low})) << "a size that cannot be is ignored";
}

TEST_F(ManagedWindowListTest, LeavesMinimisedWindowsOut)
{
    const TestWindow first(server(), {.frame = low});
    const TestWindow second(server(), {.frame = high});
    ASSERT_TRUE(waitForOrdinary({high, low}));
    constexpr quint32 iconic = 3;
    server().connection().sendToRoot(second.id(), "WM_CHANGE_STATE", {iconic});
    EXPECT_TRUE(waitForOrdinary({low}));
}

TEST_F(ManagedWindowListTest, LeavesOtherWorkspacesOutButNotWindowsOnAll)
{
    const TestWindow here(server(), {.frame = low});
    const TestWindow everywhere(server(), {.frame = high});
    ASSERT_TRUE(waitForOrdinary({high, low}));
    constexpr quint32 allWorkspaces = 0xffffffff;
    server().connection().sendToRoot(everywhere.id(), "_NET_WM_DESKTOP", {allWorkspaces, fromApplication});
    server().connection().sendToRoot(here.id(), "_NET_WM_DESKTOP", {1, fromApplication});
    EXPECT_TRUE(waitForOrdinary({high}));
}

TEST_F(ManagedWindowListTest, GivesDocksALayerAndLeavesTheDesktopOut)
{
    const QRect bar(0, 760, 1280, 40);
    const TestWindow desktop(server(), {.frame = QRect(0, 0, 1280, 800), .kind = WindowKind::desktop});
    const TestWindow dock(server(), {.frame = bar, .kind = WindowKind::dock});
    const TestWindow window(server(), {.frame = low});
    EXPECT_TRUE(waitForOrdinary({low}));
    ASSERT_TRUE(waitFor([&] { return listedAt(bar).has_value(); }));
    EXPECT_NE(listedAt(bar)->layer, 0);
    EXPECT_FALSE(listedAt(QRect(0, 0, 1280, 800)));
    EXPECT_EQ(listed().size(), 2U);
}

TEST_F(ManagedWindowListTest, GivesMenusAndNotificationsALayer)
{
    const TestWindow menu(server(), {.frame = high, .kind = WindowKind::overrideRedirect});
    EXPECT_NE(listedAt(high)->layer, 0);
    TestWindow note(server(), {.frame = low});
    server().connection().setCardinals(note.id(), "_NET_WM_WINDOW_TYPE", "ATOM",
                                       {server().connection().atom("_NET_WM_WINDOW_TYPE_UNHEARD_OF"),
                                        server().connection().atom("_NET_WM_WINDOW_TYPE_NOTIFICATION"),
                                        server().connection().atom("_NET_WM_WINDOW_TYPE_NORMAL")});
    server().connection().sync();
    EXPECT_TRUE(waitFor([&] { return listedAt(low) && listedAt(low)->layer != 0; }));
}

TEST_F(ManagedWindowListTest, KnowsOwnWindows)
{
    QWidget managed(nullptr, Qt::FramelessWindowHint);
    managed.resize(200, 100);
    managed.show();
    QWidget card(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::Tool);
    card.resize(80, 60);
    card.show();
    ASSERT_TRUE(waitFor([&] { return listed().size() == 2; }));
    for (const auto &window : listed()) {
        EXPECT_EQ(window.ownerProcessID, ::getpid());
    }
}

TEST_F(ManagedWindowListTest, BelievesTheServerMoreThanTheProgramAboutItsProcess)
{
    const TestWindow window(server(), {.frame = low, .pid = 4'194'304 + 17});
    ASSERT_TRUE(waitForOrdinary({low}));
    EXPECT_EQ(listedAt(low)->ownerProcessID, ::getpid());
}

TEST_F(ManagedWindowListTest, KnowsTheProcessOfAnotherProgramAlsoWhileItHangs)
{
    Process xterm({.program = QStringLiteral("xterm"),
                   .arguments = {QStringLiteral("-geometry"), QStringLiteral("40x10+200+150")},
                   .environment = server().clientEnvironment()});
    ASSERT_TRUE(waitFor([this] { return ordinary().size() == 1; }));
    xterm.sendSignal(SIGSTOP);
    const auto windows = listed();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows.front().ownerProcessID, xterm.pid());
    xterm.sendSignal(SIGCONT);
}

TEST_F(ManagedWindowListTest, ForgetsAWindowManagerThatEnded)
{
    const TestWindow window(server(), {.frame = low});
    ASSERT_TRUE(waitForOrdinary({low}));
    // What a window manager that crashed leaves behind.
    const XConnection &connection = server().connection();
    connection.setCardinals(connection.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {0x7fffff});
    connection.setCardinals(connection.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", {0x7ffffe});
    connection.sync();
    EXPECT_THAT(ordinary(), ElementsAre(low));
}

/// How often this thread has gone to sleep for something.
long waitsSoFar()
{
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

TEST_F(ManagedWindowListTest, AsksAboutAHundredWindowsAtOnce)
{
    std::vector<std::unique_ptr<TestWindow>> windows;
    for (int index = 0; index < 100; ++index) {
        windows.push_back(
            std::make_unique<TestWindow>(server(), TestWindowOptions{.frame = QRect(5 * index, 3 * index, 200, 150)}));
    }
    ASSERT_TRUE(waitFor([this] { return ordinary().size() == 100; }));
    // Ten questions about each window would be a thousand waits if each answer were waited for. Waits are counted,
    // because how long one takes is up to whatever else the machine does.
    constexpr long mostWaits = 500;
    const long before = waitsSoFar();
    EXPECT_EQ(listed().size(), 100U);
    const long waits = waitsSoFar() - before;
    EXPECT_LT(waits, mostWaits);
}

} // namespace
} // namespace lumenfold::test
