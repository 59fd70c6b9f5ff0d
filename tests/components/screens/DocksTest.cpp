#include "tests/components/screens/ScreensTest.h"

#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

namespace lumenfold::test {
namespace {

class DocksTest : public ScreensTest {
protected:
    /// What is kept free of the only screen, in pixels from its left, top, right and bottom edge.
    [[nodiscard]] QMargins reserved()
    {
        const Screen screen = *screens().main();
        const auto pixels = [&](double points) { return qRound(points * screen.backingScale); };
        return {pixels(screen.visibleFrame.minX() - screen.frame.minX()),
                pixels(screen.frame.maxY() - screen.visibleFrame.maxY()),
                pixels(screen.frame.maxX() - screen.visibleFrame.maxX()),
                pixels(screen.visibleFrame.minY() - screen.frame.minY())};
    }

    void setRootCardinals(const char *name, const QList<quint32> &values) const
    {
        server().connection().setCardinals(server().connection().root(), name, "CARDINAL", values);
        server().connection().sync();
    }

    void removeRootProperties(const QList<const char *> &names) const
    {
        for (const char *name : names) {
            xcb_delete_property(server().connection().get(), server().connection().root(),
                                server().connection().atom(name));
        }
        server().connection().sync();
    }
};

TEST_F(DocksTest, DocksReserveTheirRoomAndGiveItBack)
{
    const WindowManager windowManager(server(), WindowManagerKind::openbox);
    {
        const TestWindow bar(server(),
                             {.frame = QRect(0, 760, 1280, 40), .kind = WindowKind::dock, .strut = {0, 0, 0, 40}});
        EXPECT_TRUE(waitFor([this] { return changes() > 0 && reserved() == QMargins(0, 0, 0, 40); }));
        const TestWindow side(server(),
                              {.frame = QRect(0, 0, 64, 760), .kind = WindowKind::dock, .strut = {64, 0, 0, 0}});
        EXPECT_TRUE(waitFor([this] { return reserved() == QMargins(64, 0, 0, 40); }));
    }
    EXPECT_TRUE(waitFor([this] { return reserved() == QMargins(); }));
}

TEST_F(DocksTest, ADockThatChangesItsStrutIsFollowed)
{
    const WindowManager windowManager(server(), WindowManagerKind::openbox);
    const TestWindow bar(server(), {.frame = QRect(0, 0, 1280, 30), .kind = WindowKind::dock, .strut = {0, 0, 30, 0}});
    ASSERT_TRUE(waitFor([this] { return reserved() == QMargins(0, 30, 0, 0); }));
    const int before = changes();
    server().connection().setCardinals(bar.id(), "_NET_WM_STRUT_PARTIAL", "CARDINAL",
                                       {0, 0, 55, 0, 0, 0, 0, 0, 0, 1279, 0, 0});
    server().connection().sync();
    EXPECT_TRUE(waitFor([this] { return reserved() == QMargins(0, 55, 0, 0); }));
    EXPECT_TRUE(waitFor([&] { return changes() > before; }));
}

TEST_F(DocksTest, ADockReservesRoomOnItsOwnScreenOnly)
{
    plugInTwo();
    const WindowManager windowManager(server(), WindowManagerKind::openbox);
    // At the lower edge of the right screen: 200 pixels of the root are below it. The old property has no spans.
    const TestWindow bar(server(),
                         {.frame = QRect(480, 560, 800, 40), .kind = WindowKind::dock, .strut = {0, 0, 0, 240}});
    EXPECT_TRUE(waitFor([this] {
        const Screen main = *screens().main();
        return main.visibleFrame ==
               Rect{0, 40 / main.backingScale, main.frame.width, main.frame.height - 40 / main.backingScale};
    }));
    EXPECT_EQ(screenAt(left).visibleFrame, screenAt(left).frame);
}

TEST_F(DocksTest, TheWorkAreaCountsWhereNoDockTells)
{
    setRootCardinals("_NET_WORKAREA", {0, 0, 1280, 800, 10, 20, 1200, 700});
    setRootCardinals("_NET_CURRENT_DESKTOP", {1});
    EXPECT_TRUE(waitFor([this] { return reserved() == QMargins(10, 20, 70, 80); }));
    EXPECT_TRUE(waitFor([this] { return changes() > 0; }));
    setRootCardinals("_NET_CURRENT_DESKTOP", {0});
    EXPECT_TRUE(waitFor([this] { return reserved() == QMargins(); }));
    removeRootProperties({"_NET_WORKAREA", "_NET_CURRENT_DESKTOP"});
}

TEST_F(DocksTest, PropertiesThatMakeNoSenseAreIgnored)
{
    setRootCardinals("_NET_CURRENT_DESKTOP", {4000000000U});
    setRootCardinals("_NET_WORKAREA", {5000, 5000, 10, 10});
    server().connection().setProperty(server().connection().root(), "_NET_CLIENT_LIST", "WINDOW",
                                      QByteArray("\x01\x02\x03\x04", 4));
    server().connection().sync();
    EXPECT_TRUE(staysTrue([this] { return reserved() == QMargins(); }, std::chrono::milliseconds(200)));
    removeRootProperties({"_NET_WORKAREA", "_NET_CURRENT_DESKTOP", "_NET_CLIENT_LIST"});
}

} // namespace
} // namespace lumenfold::test
