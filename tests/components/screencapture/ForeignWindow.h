#pragma once

#include "tests/support/desktop/XConnection.h"
#include "tests/support/desktop/XServer.h"

#include <QColor>
#include <QImage>
#include <QRect>

namespace lumenfold::test {

struct ForeignWindowOptions {
    /// The inside, root pixels.
    QRect frame;
    /// 24, or 32 for a window with transparency.
    int depth = 24;
    /// Fills the window. Of depth 32: premultiplied ARGB.
    QRgb colour = 0;
    int border = 0;
    QRgb borderColour = 0;
};

/// An unmanaged window of another program that answers nothing: everything the server needs to show it is with the
/// server.
class ForeignWindow {
public:
    ForeignWindow(XServer &server, const ForeignWindowOptions &options);
    ~ForeignWindow();
    ForeignWindow(const ForeignWindow &) = delete;
    ForeignWindow &operator=(const ForeignWindow &) = delete;

    /// Parts of the inside; all else is cut off, border included.
    void setShape(const QList<QRect> &parts);
    void setOpacity(double opacity);
    [[nodiscard]] xcb_window_t id() const { return m_window; }

private:
    XConnection m_connection;
    xcb_window_t m_window = XCB_NONE;
};

/// Returns when the server's compositing manager really blends windows, which is a moment after it says so.
void waitForBlending(XServer &server);

} // namespace lumenfold::test
