#include "tests/components/screencapture/ForeignWindow.h"

#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Wait.h"

#include <xcb/shape.h>

#include <stdexcept>
#include <vector>

namespace lumenfold::test {
namespace {

xcb_visualid_t visualOf(const xcb_screen_t *screen, int depth)
{
    for (auto allowed = xcb_screen_allowed_depths_iterator(screen); allowed.rem > 0; xcb_depth_next(&allowed)) {
        if (allowed.data->depth == depth && xcb_depth_visuals_length(allowed.data) > 0) {
            return xcb_depth_visuals(allowed.data)->visual_id;
        }
    }
    throw std::runtime_error("no visual of this depth");
}

} // namespace

ForeignWindow::ForeignWindow(XServer &server, const ForeignWindowOptions &options) : m_connection(server.display())
{
    xcb_connection_t *xcb = m_connection.get();
    const xcb_screen_t *screen = m_connection.screen();
    const xcb_visualid_t visual =
        options.depth == screen->root_depth ? screen->root_visual : visualOf(screen, options.depth);
    const xcb_colormap_t colours = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colours, screen->root, visual);
    m_window = xcb_generate_id(xcb);
    const std::uint32_t values[] = {options.colour, options.borderColour, 1, colours};
    xcb_create_window(xcb, static_cast<std::uint8_t>(options.depth), m_window, screen->root,
                      static_cast<std::int16_t>(options.frame.x() - options.border),
                      static_cast<std::int16_t>(options.frame.y() - options.border),
                      static_cast<std::uint16_t>(options.frame.width()),
                      static_cast<std::uint16_t>(options.frame.height()), static_cast<std::uint16_t>(options.border),
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP, values);
    xcb_map_window(xcb, m_window);
    m_connection.sync();
}

ForeignWindow::~ForeignWindow() = default;

void ForeignWindow::setShape(const QList<QRect> &parts)
{
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect &part : parts) {
        rectangles.push_back({static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                              static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height())});
    }
    xcb_shape_rectangles(m_connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                         m_window, 0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    m_connection.sync();
}

void ForeignWindow::setOpacity(double opacity)
{
    m_connection.setCardinals(m_window, "_NET_WM_WINDOW_OPACITY", "CARDINAL",
                              {static_cast<quint32>(opacity * 0xffffffffU)});
    m_connection.sync();
}

void waitForBlending(XServer &server)
{
    constexpr QRgb probeColour = 0xffff01fe;
    const QRect place(40, 40, 20, 20);
    const auto isProbeSeen = [&] { return rootPicture(server.connection(), place).pixel(10, 10) == probeColour; };
    {
        const ForeignWindow probe(server, {.frame = place, .colour = probeColour});
        const ForeignWindow clear(server, {.frame = place, .depth = 32, .colour = 0x00000000});
        waitUntil("the compositing manager to blend windows", isProbeSeen);
    }
    waitUntil("the compositing manager to let the probe go", [&] { return !isProbeSeen(); });
}

} // namespace lumenfold::test
