#include "tests/components/panels/PanelDesk.h"

#include "tests/support/desktop/Process.h"

#include <QGuiApplication>
#include <QWindow>

namespace lumenfold::test {
namespace {

class PanelPlacementTest : public PanelDesk, public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    void SetUp() override { startWindowManager(GetParam()); }

    void leaveWorkspace()
    {
        if (GetParam() != WindowManagerKind::i3) {
            m_windowManager->showWorkspace(1);
            return;
        }
        // Has no second workspace until it is asked for by name.
        Process message({.program = QStringLiteral("i3-msg"),
                         .arguments = {QStringLiteral("workspace"), QStringLiteral("2")},
                         .environment = server().clientEnvironment()});
        EXPECT_TRUE(message.waitForExit().has_value());
    }
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, PanelPlacementTest,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox,
                                           WindowManagerKind::xfwm4, WindowManagerKind::i3));

TEST_P(PanelPlacementTest, landsExactlyWhereAskedAlsoPartlyOffScreen)
{
    const Size screen = screenSize();
    for (const Rect &frame : {Rect{24, 24, 220, 165}, Rect{100.5, 50.5, 100.5, 60.5}, Rect{-110, -80, 220, 165},
                              Rect{screen.width - 10, screen.height - 10, 200, 100},
                              Rect{0, 0, screen.width, screen.height}, Rect{33.3, 44.4, 55.5, 66.6}}) {
        const auto panel = showPanel(frame, Qt::red, {.title = QStringLiteral("placed")});
        EXPECT_EQ(connection().frameOf(windowOf(QStringLiteral("placed"))), pixelsOf(frame));
        EXPECT_EQ(panel->frame(), frame);
    }
}

TEST_P(PanelPlacementTest, followsEveryFrameThatIsSet)
{
    const auto panel = showPanel({24, 24, 220, 165}, Qt::red, {.title = QStringLiteral("moved")});
    const xcb_window_t window = windowOf(QStringLiteral("moved"));
    for (const Rect &frame : {Rect{300, 24, 220, 165}, Rect{300, 100, 110.5, 80.5}, Rect{-50, 100, 220, 165}}) {
        panel->setFrame(frame);
        settle();
        EXPECT_EQ(connection().frameOf(window), pixelsOf(frame));
        EXPECT_EQ(panel->frame(), frame);
    }
}

TEST_P(PanelPlacementTest, aHiddenPanelComesBackWhereItWasPutMeanwhile)
{
    const auto panel = showPanel({24, 24, 220, 165}, Qt::red, {.title = QStringLiteral("hidden")});
    panel->orderOut();
    panel->setFrame({200.5, 120, 99.5, 77});
    panel->orderFrontRegardless();
    settle();
    EXPECT_EQ(connection().frameOf(windowOf(QStringLiteral("hidden"))), pixelsOf({200.5, 120, 99.5, 77}));
    EXPECT_TRUE(becomes({250, 150}, Qt::red));
}

TEST_P(PanelPlacementTest, theViewCoversEveryPixelOfThePanel)
{
    // Odd numbers of pixels at two per point, which the toolkit cannot name.
    const Rect frame{100.5, 50.5, 60.5, 40.5};
    const auto panel = showPanel(frame, Qt::red);
    const QRect pixels = pixelsOf(frame);
    QImage expected(pixels.size(), QImage::Format_RGB32);
    expected.fill(Qt::red);
    EXPECT_TRUE(waitFor([&] { return differingPixels(rootPicture(connection(), pixels), expected) == 0; }));

    panel->setFrame({100.5, 50.5, 80.5, 70.5});
    settle();
    const QRect larger = pixelsOf(panel->frame());
    expected = QImage(larger.size(), QImage::Format_RGB32);
    expected.fill(Qt::red);
    EXPECT_TRUE(waitFor([&] { return differingPixels(rootPicture(connection(), larger), expected) == 0; }));
}

TEST_P(PanelPlacementTest, staysWhenTheWorkspaceChanges)
{
    if (GetParam() == WindowManagerKind::none) {
        GTEST_SKIP() << "no workspaces without a window manager";
    }
    const Rect frame{100, 100, 120, 90};
    const auto panel = showPanel(frame, Qt::red, {.title = QStringLiteral("sticky")});
    const TestWindow window(server(), {.frame = {400, 200, 300, 200}});
    leaveWorkspace();
    EXPECT_TRUE(waitFor([&] { return !isMapped(window.id()); })) << "the workspace has not changed";
    settle();
    EXPECT_TRUE(isMapped(windowOf(QStringLiteral("sticky"))));
    EXPECT_EQ(colourAt(frame.center()), QColor(Qt::red));
}

class PanelWindowTest : public PanelDesk {};

TEST_F(PanelWindowTest, isNoWindowForWindowManagersTaskBarsAndCompositors)
{
    const auto panel =
        showPanel({100, 100, 120, 90}, Qt::red, {.transparentMargin = 12, .title = QStringLiteral("dressed")});
    const xcb_window_t window = windowOf(QStringLiteral("dressed"));
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection().get(), xcb_get_window_attributes(connection().get(), window), nullptr));
    ASSERT_TRUE(attributes);
    EXPECT_EQ(attributes->override_redirect, 1);

    const auto margin = static_cast<quint32>(12 * scale());
    EXPECT_EQ(connection().cardinals(window, "_GTK_FRAME_EXTENTS"), QList<quint32>({margin, margin, margin, margin}));
    EXPECT_EQ(connection().cardinals(window, "_NET_WM_BYPASS_COMPOSITOR"), QList<quint32>({2}));
    EXPECT_TRUE(
        connection().cardinals(window, "_NET_WM_STATE").contains(connection().atom("_NET_WM_STATE_SKIP_TASKBAR")));
    EXPECT_EQ(connection().cardinals(window, "_NET_WM_WINDOW_TYPE").value(0),
              connection().atom("_NET_WM_WINDOW_TYPE_DND"));
    // WM_HINTS: the input field is given (bit 0 of the flags), and says no.
    const QList<quint32> hints = connection().cardinals(window, "WM_HINTS");
    ASSERT_GE(hints.size(), 2);
    EXPECT_EQ(hints[0] & 1, 1U);
    EXPECT_EQ(hints[1], 0U);
}

TEST_F(PanelWindowTest, hasAVisualWithAlphaAndNoOpenGL)
{
    const auto panel = showPanel({100, 100, 120, 90}, Qt::red, {.title = QStringLiteral("raster")});
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        connection().get(), xcb_get_geometry(connection().get(), windowOf(QStringLiteral("raster"))), nullptr));
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->depth, 32);
    for (const QWindow *window : QGuiApplication::topLevelWindows()) {
        EXPECT_EQ(window->surfaceType(), QSurface::RasterSurface) << qPrintable(window->title());
    }
}

} // namespace
} // namespace lumenfold::test
