#pragma once

#include "platform/screencapture/X11WindowStack.h"
#include "platform/x11/X11Connection.h"

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QRegion>

#include <optional>
#include <unordered_map>
#include <vector>

#include <xcb/render.h>

namespace lumenfold {

/// The server's drawing formats for its visuals.
class X11PictureFormats {
public:
    struct Format {
        xcb_render_pictformat_t id = XCB_NONE;
        bool hasAlpha = false;
    };

    /// Asks the server; waits for the answer.
    explicit X11PictureFormats(x11::X11Connection &connection);
    /// Nothing for a visual that cannot be drawn from.
    [[nodiscard]] std::optional<Format> formatOf(xcb_visualid_t visual) const;

private:
    std::unordered_map<xcb_visualid_t, Format> m_formats;
};

/// A pixmap on the server, freed with this object.
class ServerPixmap {
public:
    ServerPixmap(x11::X11Connection &connection, std::uint8_t depth, QSize size);
    ServerPixmap(ServerPixmap &&other) noexcept;
    ServerPixmap &operator=(ServerPixmap &&) = delete;
    ~ServerPixmap();
    [[nodiscard]] xcb_pixmap_t id() const { return m_pixmap; }

private:
    QPointer<x11::X11Connection> m_connection;
    xcb_pixmap_t m_pixmap;
};

/// What the desktop shows where no window is.
struct DesktopBackground {
    /// A picture that is repeated from the root's origin, of the root's depth; another program's.
    std::optional<xcb_pixmap_t> pixmap;
    /// Otherwise: a root pixel with nothing but the background in it, whose colour stands for all of it.
    std::optional<QPoint> sample;
    // With neither, it is the root window's own background.
};

/// What is to be drawn. All in root pixels.
struct Scene {
    /// The picture. May stick out of `screen`; what is outside is black.
    QRect picture;
    /// What of the root window may be in it.
    QRect screen;
    /// Where the picture must not show what is on the screen, but what is beneath.
    QRegion rebuilt;
    /// What is beneath, bottom to top.
    std::vector<StackedWindow> windows;
    DesktopBackground background;
    /// Whether a compositing manager blends windows; without one, their transparency is ignored.
    bool isBlended = false;
};

/// Draws a scene on the server. Sends requests only; windows that vanish meanwhile are left out.
[[nodiscard]] ServerPixmap drawScene(x11::X11Connection &connection, const X11PictureFormats &formats,
                                     const Scene &scene);

/// What a wallpaper program said it painted; nothing when it said nothing or its pixmap is gone.
[[nodiscard]] QCoro::Task<std::optional<xcb_pixmap_t>> wallpaper(x11::X11Connection &connection);

} // namespace lumenfold
