#include "platform/screencapture/X11Scene.h"

#include "platform/x11/X11Properties.h"

#include <algorithm>
#include <array>
#include <utility>

#include <xcb/composite.h>

namespace lumenfold {
namespace {

using namespace x11;

std::vector<xcb_rectangle_t> asRectangles(const QRegion &region)
{
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect &part : region) {
        rectangles.push_back({static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                              static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height())});
    }
    return rectangles;
}

/// Draws into one pixmap that shows `scene.picture`.
class ScenePainter {
public:
    ScenePainter(X11Connection &connection, const X11PictureFormats &formats, const Scene &scene, xcb_pixmap_t target)
        : m_connection(connection), m_xcb(connection.xcb()), m_formats(formats), m_scene(scene), m_target(target)
    {
    }

    void paintScreen()
    {
        const xcb_gcontext_t context = xcb_generate_id(m_xcb);
        const xcb_create_gc_value_list_t values{.foreground = m_connection.screen().black_pixel,
                                                .subwindow_mode = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS,
                                                .graphics_exposures = 0};
        xcb_create_gc_aux(m_xcb, context, m_target,
                          XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, &values);
        const QRect all(QPoint(0, 0), m_scene.picture.size());
        const auto black = asRectangles(all);
        xcb_poly_fill_rectangle(m_xcb, m_target, context, 1, black.data());
        const QRect seen = m_scene.picture.intersected(m_scene.screen);
        if (!seen.isEmpty()) {
            const QPoint place = seen.topLeft() - m_scene.picture.topLeft();
            xcb_copy_area(m_xcb, m_connection.root(), m_target, context, static_cast<std::int16_t>(seen.x()),
                          static_cast<std::int16_t>(seen.y()), static_cast<std::int16_t>(place.x()),
                          static_cast<std::int16_t>(place.y()), static_cast<std::uint16_t>(seen.width()),
                          static_cast<std::uint16_t>(seen.height()));
        }
        xcb_free_gc(m_xcb, context);
    }

    void rebuild()
    {
        const QRegion region = m_scene.rebuilt.intersected(m_scene.picture.intersected(m_scene.screen));
        const auto rootFormat = m_formats.formatOf(m_connection.screen().root_visual);
        if (region.isEmpty() || !rootFormat) {
            return;
        }
        const xcb_render_picture_t canvas = xcb_generate_id(m_xcb);
        xcb_render_create_picture(m_xcb, canvas, m_target, rootFormat->id, 0, nullptr);
        paintBackground(canvas, rootFormat->id, region);
        for (const StackedWindow &window : m_scene.windows) {
            paintWindow(canvas, window, region);
        }
        xcb_render_free_picture(m_xcb, canvas);
    }

private:
    /// Root pixels.
    void setClip(xcb_render_picture_t canvas, const QRegion &region)
    {
        const auto rectangles = asRectangles(region.translated(-m_scene.picture.topLeft()));
        xcb_render_set_picture_clip_rectangles(m_xcb, canvas, 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                                               rectangles.data());
    }

    /// Draws from `source`, whose pixel (0, 0) stands at the root pixel `origin`.
    void paint(xcb_render_picture_t canvas, std::uint8_t operation, xcb_render_picture_t source,
               xcb_render_picture_t mask, QPoint origin, const QRect &area)
    {
        const QPoint from = area.topLeft() - origin;
        const QPoint to = area.topLeft() - m_scene.picture.topLeft();
        xcb_render_composite(m_xcb, operation, source, mask, canvas, static_cast<std::int16_t>(from.x()),
                             static_cast<std::int16_t>(from.y()), 0, 0, static_cast<std::int16_t>(to.x()),
                             static_cast<std::int16_t>(to.y()), static_cast<std::uint16_t>(area.width()),
                             static_cast<std::uint16_t>(area.height()));
    }

    void paintBackground(xcb_render_picture_t canvas, xcb_render_pictformat_t format, const QRegion &region)
    {
        setClip(canvas, region);
        if (m_scene.background.pixmap) {
            paintTiled(canvas, format, *m_scene.background.pixmap, region.boundingRect());
        } else if (m_scene.background.sample) {
            const QPoint sample = *m_scene.background.sample;
            const ServerPixmap tile(m_connection, m_connection.screen().root_depth, QSize(1, 1));
            Scene onePixel{.picture = QRect(sample, QSize(1, 1)), .screen = QRect(sample, QSize(1, 1))};
            ScenePainter(m_connection, m_formats, onePixel, tile.id()).paintScreen();
            paintTiled(canvas, format, tile.id(), region.boundingRect());
        } else {
            paintRootsOwn(canvas, format, region.boundingRect());
        }
    }

    void paintTiled(xcb_render_picture_t canvas, xcb_render_pictformat_t format, xcb_pixmap_t tile, const QRect &area)
    {
        const xcb_render_picture_t source = xcb_generate_id(m_xcb);
        const xcb_render_create_picture_value_list_t values{.repeat = XCB_RENDER_REPEAT_NORMAL};
        xcb_render_create_picture_aux(m_xcb, source, tile, format, XCB_RENDER_CP_REPEAT, &values);
        paint(canvas, XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, QPoint(0, 0), area);
        xcb_render_free_picture(m_xcb, source);
    }

    /// No request reads a window's background. But a window whose background is its parent's shows it, and beside the
    /// screen nobody sees that window: it stands to the left by the root's width, which all common tiles divide.
    void paintRootsOwn(xcb_render_picture_t canvas, xcb_render_pictformat_t format, const QRect &area)
    {
        const QRect beside = area.translated(-m_connection.screen().width_in_pixels, 0);
        const xcb_window_t window = xcb_generate_id(m_xcb);
        const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, window, m_connection.root(),
                          static_cast<std::int16_t>(beside.x()), static_cast<std::int16_t>(beside.y()),
                          static_cast<std::uint16_t>(beside.width()), static_cast<std::uint16_t>(beside.height()), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(m_xcb, window);
        paintContents(canvas, window, {.id = format, .hasAlpha = false}, XCB_RENDER_PICT_OP_SRC, XCB_NONE,
                      area.topLeft(), area);
        xcb_destroy_window(m_xcb, window);
    }

    void paintWindow(xcb_render_picture_t canvas, const StackedWindow &window, const QRegion &region)
    {
        const QRegion visible = region.intersected(window.shape);
        const auto format = m_formats.formatOf(window.visual);
        if (visible.isEmpty() || !format) {
            return;
        }
        setClip(canvas, visible);
        const bool isTranslucent = m_scene.isBlended && window.opacity < 1;
        const bool isBlended = isTranslucent || (m_scene.isBlended && format->hasAlpha);
        xcb_render_picture_t mask = XCB_NONE;
        if (isTranslucent) {
            constexpr double full = 0xffff;
            mask = xcb_generate_id(m_xcb);
            xcb_render_create_solid_fill(
                m_xcb, mask,
                {.red = 0, .green = 0, .blue = 0, .alpha = static_cast<std::uint16_t>(window.opacity * full)});
        }
        paintContents(canvas, window.id, *format, isBlended ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC, mask,
                      window.frame.topLeft(), visible.boundingRect());
        if (mask != XCB_NONE) {
            xcb_render_free_picture(m_xcb, mask);
        }
    }

    /// The whole contents of a redirected window, border and children included, wherever it is covered.
    void paintContents(xcb_render_picture_t canvas, xcb_window_t window, const X11PictureFormats::Format &format,
                       std::uint8_t operation, xcb_render_picture_t mask, QPoint origin, const QRect &area)
    {
        const xcb_pixmap_t contents = xcb_generate_id(m_xcb);
        xcb_composite_name_window_pixmap(m_xcb, window, contents);
        const xcb_render_picture_t source = xcb_generate_id(m_xcb);
        xcb_render_create_picture(m_xcb, source, contents, format.id, 0, nullptr);
        paint(canvas, operation, source, mask, origin, area);
        xcb_render_free_picture(m_xcb, source);
        xcb_free_pixmap(m_xcb, contents);
    }

    X11Connection &m_connection;
    xcb_connection_t *m_xcb;
    const X11PictureFormats &m_formats;
    const Scene &m_scene;
    xcb_pixmap_t m_target;
};

} // namespace

X11PictureFormats::X11PictureFormats(X11Connection &connection)
{
    if (connection.extension(&xcb_render_id) == nullptr) {
        return;
    }
    const auto answer =
        connection.reply(xcb_render_query_pict_formats_reply, xcb_render_query_pict_formats(connection.xcb()));
    if (!answer) {
        return;
    }
    std::unordered_map<xcb_render_pictformat_t, bool> hasAlpha;
    for (auto format = xcb_render_query_pict_formats_formats_iterator(answer->get()); format.rem > 0;
         xcb_render_pictforminfo_next(&format)) {
        hasAlpha[format.data->id] = format.data->direct.alpha_mask != 0;
    }
    for (auto screen = xcb_render_query_pict_formats_screens_iterator(answer->get()); screen.rem > 0;
         xcb_render_pictscreen_next(&screen)) {
        for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem > 0;
             xcb_render_pictdepth_next(&depth)) {
            for (auto visual = xcb_render_pictdepth_visuals_iterator(depth.data); visual.rem > 0;
                 xcb_render_pictvisual_next(&visual)) {
                m_formats[visual.data->visual] = {visual.data->format, hasAlpha[visual.data->format]};
            }
        }
    }
}

std::optional<X11PictureFormats::Format> X11PictureFormats::formatOf(xcb_visualid_t visual) const
{
    const auto found = m_formats.find(visual);
    return found == m_formats.end() ? std::nullopt : std::optional(found->second);
}

ServerPixmap::ServerPixmap(X11Connection &connection, std::uint8_t depth, QSize size)
    : m_connection(&connection), m_pixmap(xcb_generate_id(connection.xcb()))
{
    xcb_create_pixmap(connection.xcb(), depth, m_pixmap, connection.root(), static_cast<std::uint16_t>(size.width()),
                      static_cast<std::uint16_t>(size.height()));
}

ServerPixmap::ServerPixmap(ServerPixmap &&other) noexcept
    : m_connection(std::exchange(other.m_connection, nullptr)), m_pixmap(other.m_pixmap)
{
}

ServerPixmap::~ServerPixmap()
{
    if (m_connection) {
        xcb_free_pixmap(m_connection->xcb(), m_pixmap);
    }
}

ServerPixmap drawScene(X11Connection &connection, const X11PictureFormats &formats, const Scene &scene)
{
    ServerPixmap target(connection, connection.screen().root_depth, scene.picture.size());
    ScenePainter painter(connection, formats, scene, target.id());
    painter.paintScreen();
    painter.rebuild();
    return target;
}

QCoro::Task<std::optional<xcb_pixmap_t>> wallpaper(X11Connection &connection)
{
    const std::uint8_t rootDepth = connection.screen().root_depth;
    for (const char *name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        const auto asked = requestProperty(connection, connection.root(), connection.atom(name), XCB_ATOM_PIXMAP, 1);
        const auto answer = co_await connection.replyLater<xcb_get_property_reply_t>(asked.sequence);
        const auto pixmaps = answer ? itemsOf(**answer, XCB_ATOM_PIXMAP) : std::vector<std::uint32_t>();
        if (pixmaps.empty()) {
            continue;
        }
        const auto geometry = co_await connection.replyLater<xcb_get_geometry_reply_t>(
            xcb_get_geometry(connection.xcb(), pixmaps.front()).sequence);
        if (geometry && (*geometry)->depth == rootDepth) {
            co_return pixmaps.front();
        }
    }
    co_return std::nullopt;
}

} // namespace lumenfold
