#pragma once

#include "platform/panels/PanelContentShape.h"
#include "platform/panels/X11PanelFactory.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/fakes/FakeKeyEventTap.h"

#include <QColor>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace lumenfold::test {

/// A view of one colour, which may be translucent. Without a margin of its own it fills the panel.
class ColouredView : public QWidget {
public:
    explicit ColouredView(const QColor &colour, int margin = 0);

    [[nodiscard]] int clicks() const { return m_clicks; }
    void setColour(const QColor &colour);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QColor m_colour;
    int m_margin;
    int m_clicks = 0;
};

/// Paints an ellipse and says so.
class RoundView : public QWidget, public PanelContentShape {
public:
    [[nodiscard]] QRegion opaqueShape(double scale) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// Panels on the test's X server, with the window manager and the compositor that a test asks for. Everything it tells
/// was read by another client of the server.
class PanelDesk : public ::testing::Test {
protected:
    PanelDesk();
    ~PanelDesk() override;

    void startWindowManager(WindowManagerKind kind);
    void startCompositor(CompositorKind kind);
    void startCompositor(const QByteArray &picomConfiguration);
    void stopCompositor();

    /// Not shown yet.
    [[nodiscard]] std::unique_ptr<Panel> makePanel(const Rect &frame, PanelOptions options = {});
    /// Shown with an opaque view of this colour, and painted.
    [[nodiscard]] std::unique_ptr<Panel> showPanel(const Rect &frame, const QColor &colour = Qt::red,
                                                   PanelOptions options = {});

    /// The program's windows on the server, mapped or not, lowest first; those of panels have a title each.
    [[nodiscard]] xcb_window_t windowOf(const QString &title) const;
    [[nodiscard]] bool isMapped(xcb_window_t window) const;
    /// Both as they stand among the children of the root.
    [[nodiscard]] bool isAbove(xcb_window_t upper, xcb_window_t lower) const;
    /// The child of the root in which the window is.
    [[nodiscard]] xcb_window_t topLevelOf(xcb_window_t window) const;

    /// Where these points are on the server: by plain arithmetic, not by the program's own conversion.
    [[nodiscard]] QRect pixelsOf(const Rect &points) const;
    [[nodiscard]] QColor colourAt(Point place) const;
    [[nodiscard]] QPoint pixelAt(Point place) const;
    /// Waits until the screen shows the colour there.
    [[nodiscard]] bool becomes(Point place, const QColor &colour) const;
    /// Lets the program and the server finish what they have begun.
    void settle() const;

    [[nodiscard]] XServer &server() const { return guiTestServer(); }
    [[nodiscard]] const XConnection &connection() const { return server().connection(); }
    [[nodiscard]] int scale() const;
    /// Of the one screen, in points.
    [[nodiscard]] Size screenSize() const;

    FakeKeyEventTapService m_taps;
    std::unique_ptr<x11::X11Connection> m_screensConnection;
    std::unique_ptr<X11Screens> m_screens;
    std::vector<std::uint32_t> m_leftWithoutTrace;
    std::unique_ptr<X11PanelFactory> m_factory;
    std::unique_ptr<WindowManager> m_windowManager;
    std::unique_ptr<Compositor> m_compositor;

private:
    int m_panelsMade = 0;
};

} // namespace lumenfold::test
