#include "platform/screencapture/X11WindowStack.h"

#include "platform/x11/X11Properties.h"

#include <limits>

#include <xcb/shape.h>

namespace lumenfold {
namespace {

using namespace x11;

struct WindowQuestion {
    xcb_window_t id = XCB_NONE;
    xcb_get_window_attributes_cookie_t attributes{};
    xcb_get_geometry_cookie_t geometry{};
};

struct DetailQuestion {
    StackedWindow window;
    int border = 0;
    xcb_shape_query_extents_cookie_t isShaped{};
    xcb_shape_get_rectangles_cookie_t shape{};
    xcb_get_property_cookie_t opacity{};
};

/// The shape's rectangles count from the window's inside, within its border.
QRegion shapeOf(const xcb_shape_get_rectangles_reply_t &reply, const QRect &frame, int border)
{
    const xcb_rectangle_t *rectangles = xcb_shape_get_rectangles_rectangles(&reply);
    QRegion region;
    for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(&reply); ++index) {
        const xcb_rectangle_t &part = rectangles[index];
        region += QRect(part.x, part.y, part.width, part.height);
    }
    return region.translated(frame.topLeft() + QPoint(border, border)).intersected(frame);
}

double opacityOf(const xcb_get_property_reply_t &reply)
{
    const auto items = itemsOf(reply, XCB_ATOM_CARDINAL);
    return items.empty() ? 1 : static_cast<double>(items.front()) / std::numeric_limits<std::uint32_t>::max();
}

} // namespace

QCoro::Task<tl::expected<std::vector<StackedWindow>, PlatformError>> stackedWindows(X11Connection &connection,
                                                                                    QRegion area)
{
    xcb_connection_t *xcb = connection.xcb();
    const bool hasShapes = connection.extension(&xcb_shape_id) != nullptr;
    const xcb_atom_t opacityProperty = connection.atom("_NET_WM_WINDOW_OPACITY");

    const auto tree =
        co_await connection.replyLater<xcb_query_tree_reply_t>(xcb_query_tree(xcb, connection.root()).sequence);
    if (!tree) {
        co_return tl::unexpected(tree.error());
    }
    const xcb_window_t *children = xcb_query_tree_children(tree->get());
    std::vector<WindowQuestion> questions;
    for (int index = 0; index < xcb_query_tree_children_length(tree->get()); ++index) {
        questions.push_back(
            {children[index], xcb_get_window_attributes(xcb, children[index]), xcb_get_geometry(xcb, children[index])});
    }

    // An answer that is missing from here on only means that its window is gone.
    std::vector<DetailQuestion> details;
    for (const WindowQuestion &question : questions) {
        const auto attributes =
            co_await connection.replyLater<xcb_get_window_attributes_reply_t>(question.attributes.sequence);
        const auto geometry = co_await connection.replyLater<xcb_get_geometry_reply_t>(question.geometry.sequence);
        if (!attributes || !geometry || (*attributes)->map_state != XCB_MAP_STATE_VIEWABLE ||
            (*attributes)->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            continue;
        }
        const int border = (*geometry)->border_width;
        const QRect frame((*geometry)->x, (*geometry)->y, (*geometry)->width + 2 * border,
                          (*geometry)->height + 2 * border);
        if (area.intersects(frame)) {
            details.push_back(
                {.window = {.id = question.id, .frame = frame, .shape = frame, .visual = (*attributes)->visual},
                 .border = border,
                 .isShaped = hasShapes ? xcb_shape_query_extents(xcb, question.id) : xcb_shape_query_extents_cookie_t{},
                 .shape = hasShapes ? xcb_shape_get_rectangles(xcb, question.id, XCB_SHAPE_SK_BOUNDING)
                                    : xcb_shape_get_rectangles_cookie_t{},
                 .opacity = requestProperty(connection, question.id, opacityProperty, XCB_ATOM_CARDINAL, 1)});
        }
    }

    std::vector<StackedWindow> windows;
    for (DetailQuestion &detail : details) {
        if (hasShapes) {
            const auto shape = co_await connection.replyLater<xcb_shape_get_rectangles_reply_t>(detail.shape.sequence);
            const auto extents =
                co_await connection.replyLater<xcb_shape_query_extents_reply_t>(detail.isShaped.sequence);
            // For a window without a shape the server forgets half of its border.
            if (shape && extents && (*extents)->bounding_shaped != 0) {
                detail.window.shape = shapeOf(**shape, detail.window.frame, detail.border);
            }
        }
        const auto opacity = co_await connection.replyLater<xcb_get_property_reply_t>(detail.opacity.sequence);
        if (opacity) {
            detail.window.opacity = opacityOf(**opacity);
        }
        windows.push_back(std::move(detail.window));
    }
    if (!connection.isUsable()) {
        co_return tl::unexpected(connectionLost());
    }
    co_return windows;
}

} // namespace lumenfold
