#pragma once

#include "capture/ScreenCaptureService.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "platform/keyboard/x11/X11KeyboardRouter.h"
#include "platform/mainqueue/QtMainQueue.h"
#include "platform/panels/X11PanelFactory.h"
#include "platform/screencapture/OwnWindowTraces.h"
#include "platform/screencapture/X11ScreenshotManager.h"
#include "platform/screens/X11Screens.h"
#include "platform/windowlist/X11WindowList.h"
#include "platform/x11/X11Connection.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/Windows.h"

#include <QImage>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumenfold {

/// How a failing test tells a rectangle.
void PrintTo(const Rect &rect, std::ostream *out);

namespace test {

/// Names the test of one kind of desktop.
[[nodiscard]] std::string desktopName(const ::testing::TestParamInfo<CompositorKind> &kind);

/// The real area selector on a real X server, worked with pointer and keys and judged by what other clients of the
/// server see. The desktop shows a known picture. Places are root pixels, origin top left, unless a name says points.
class SelectionDesk : public ::testing::Test {
protected:
    struct Ending {
        std::optional<Rect> rect;
        std::optional<Screen> screen;
    };

    SelectionDesk();
    ~SelectionDesk() override;

    void startCompositor(CompositorKind kind);

    /// Returns when an overlay covers every screen and shows itself, and the keys go to the selector.
    void present();
    void startPresenting();
    /// The overlays that the server has on the screen, lowest first.
    [[nodiscard]] QList<WindowInfo> overlays() const;
    /// Holds the button at the last place, and returns when the program has seen it there.
    void pressAndDragTo(QPoint from, QPoint to);
    /// Goes on with the button held.
    void dragOnTo(QPoint to);
    void drag(QPoint from, QPoint to);
    /// Waits for the completion.
    [[nodiscard]] Ending ending();
    [[nodiscard]] std::size_t endingCount() const { return m_endings.size(); }

    /// What the user sees when nothing changes any more.
    [[nodiscard]] QImage settledPicture() const;
    /// What the user sees of the desktop alone.
    [[nodiscard]] const QImage &background() const { return m_background; }
    /// Whether the desktop's pixel there shows through black of alpha 0.35.
    [[nodiscard]] bool isDimmed(const QImage &picture, QPoint at) const;
    /// The capture that follows a selection.
    [[nodiscard]] QImage capture(const Ending &selection);

    [[nodiscard]] int scale() const;
    /// A length or place in points on the only or main screen, as pixels.
    [[nodiscard]] int px(double points) const { return static_cast<int>(points * scale()); }
    [[nodiscard]] QPoint px(double x, double yFromTop) const { return {px(x), px(yFromTop)}; }
    /// Global points of a rectangle of root pixels while the main screen fills the server's height.
    [[nodiscard]] Rect points(const QRect &pixels) const;

    [[nodiscard]] XServer &server() const { return guiTestServer(); }
    [[nodiscard]] const XConnection &connection() const { return server().connection(); }
    [[nodiscard]] X11Screens &screens() { return m_screens; }
    [[nodiscard]] X11PanelFactory &panels() { return m_panels; }
    [[nodiscard]] Pointer &pointer() { return m_pointer; }
    [[nodiscard]] Keyboard &keyboard() { return m_keyboard; }

private:
    void runEvents() const;
    [[nodiscard]] bool isKeyboardTaken() const;

    std::unique_ptr<x11::X11Connection> m_connection = x11::X11Connection::open();
    std::unique_ptr<x11::X11KeyboardRouter> m_router = x11::X11KeyboardRouter::start();
    X11Screens m_screens{*m_connection};
    OwnWindowTraces m_traces;
    X11ScreenshotManager m_screenshots{*m_connection, m_screens, m_traces};
    X11WindowList m_windowList{*m_connection, m_screens};
    X11PanelFactory m_panels{x11::X11Connection::open(),
                             {.taps = m_router->taps(),
                              .screens = m_screens,
                              .onLeftWithoutTrace = [this](auto window) { m_traces.leftWithoutTrace(window); }}};
    QtMainQueue m_queue;
    ScreenCaptureService m_service;
    AreaSelectionController m_controller;
    Pointer m_pointer;
    Keyboard m_keyboard;
    std::unique_ptr<Compositor> m_compositor;
    QImage m_background;
    std::vector<Ending> m_endings;
};

} // namespace test
} // namespace lumenfold
