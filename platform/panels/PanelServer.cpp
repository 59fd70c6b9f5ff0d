#include "platform/panels/PanelServer.h"

#include <cmath>
#include <limits>
#include <vector>

#include <xcb/shape.h>

namespace lumenfold {
namespace {

constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
/// _NET_WM_BYPASS_COMPOSITOR: the window wants to stay composited, and so do those beneath it.
constexpr std::uint32_t doNotBypass = 2;

} // namespace

PanelServer::PanelServer(xcb_connection_t *toolkitConnection)
    : m_connection(toolkitConnection), m_atoms(toolkitConnection)
{
    m_atoms.prefetch({"_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DND", "_NET_WM_WINDOW_TYPE_UTILITY", "_NET_WM_STATE",
                      "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                      "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_DESKTOP", "_NET_WM_BYPASS_COMPOSITOR", "_GTK_FRAME_EXTENTS",
                      "_COMPTON_SHADOW", "_NET_WM_WINDOW_OPACITY"});
}

void PanelServer::dress(xcb_window_t window, int transparentMargin)
{
    // Of all types, the picture under a dragged pointer is the one that compositors leave alone: no shadow, no fading,
    // no dimming of what has no focus. Those who do not know it take the second.
    setAtoms(window, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DND", "_NET_WM_WINDOW_TYPE_UTILITY"});
    setAtoms(window, "_NET_WM_STATE",
             {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"});
    setCardinals(window, "_NET_WM_DESKTOP", {everyWorkspace});
    setCardinals(window, "_NET_WM_BYPASS_COMPOSITOR", {doNotBypass});
    // Says where the visible content begins; also the common way to say "draws its own shadow", hence set when it is 0.
    const auto margin = static_cast<std::uint32_t>(transparentMargin);
    setCardinals(window, "_GTK_FRAME_EXTENTS", {margin, margin, margin, margin});
    setCardinals(window, "_COMPTON_SHADOW", {0});
}

bool PanelServer::isState(xcb_atom_t property)
{
    return property == m_atoms.atom("_NET_WM_STATE");
}

void PanelServer::setBackground(xcb_window_t window, Translucency translucency, const QColor &fill)
{
    if (translucency == Translucency::available) {
        const std::uint32_t pixel = qPremultiply(fill.rgba());
        forgetOutcome(xcb_change_window_attributes_checked(m_connection, window, XCB_CW_BACK_PIXEL, &pixel));
    } else {
        const std::uint32_t none = XCB_BACK_PIXMAP_NONE;
        forgetOutcome(xcb_change_window_attributes_checked(m_connection, window, XCB_CW_BACK_PIXMAP, &none));
    }
}

void PanelServer::place(xcb_window_t window, const std::optional<QRect> &present, const QRect &wanted)
{
    std::uint16_t mask = 0;
    std::vector<std::uint32_t> values;
    const auto want = [&](std::uint16_t bit, bool differs, int value) {
        if (differs) {
            mask = static_cast<std::uint16_t>(mask | bit);
            values.push_back(static_cast<std::uint32_t>(value));
        }
    };
    want(XCB_CONFIG_WINDOW_X, !present || present->x() != wanted.x(), wanted.x());
    want(XCB_CONFIG_WINDOW_Y, !present || present->y() != wanted.y(), wanted.y());
    want(XCB_CONFIG_WINDOW_WIDTH, !present || present->width() != wanted.width(), wanted.width());
    want(XCB_CONFIG_WINDOW_HEIGHT, !present || present->height() != wanted.height(), wanted.height());
    if (mask != 0) {
        forgetOutcome(xcb_configure_window_checked(m_connection, window, mask, values.data()));
    }
}

void PanelServer::restack(const RestackStep &step)
{
    const std::uint32_t mode = step.place == RestackStep::Place::above ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW;
    if (step.sibling == 0) {
        forgetOutcome(xcb_configure_window_checked(m_connection, step.window, XCB_CONFIG_WINDOW_STACK_MODE, &mode));
        return;
    }
    const std::uint32_t values[] = {step.sibling, mode};
    forgetOutcome(xcb_configure_window_checked(m_connection, step.window,
                                               XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values));
}

void PanelServer::setOpacity(xcb_window_t window, double alpha)
{
    constexpr double opaque = std::numeric_limits<std::uint32_t>::max();
    setCardinals(window, "_NET_WM_WINDOW_OPACITY", {static_cast<std::uint32_t>(std::lround(alpha * opaque))});
}

void PanelServer::setShape(xcb_window_t window, Cut cut, const std::optional<QRegion> &shape)
{
    const xcb_shape_kind_t kind = cut == Cut::whatIsSeen ? XCB_SHAPE_SK_BOUNDING : XCB_SHAPE_SK_INPUT;
    if (!shape) {
        forgetOutcome(xcb_shape_mask_checked(m_connection, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE));
        return;
    }
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect &rect : *shape) {
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    forgetOutcome(xcb_shape_rectangles_checked(m_connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED,
                                               window, 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                                               rectangles.data()));
}

void PanelServer::erase(xcb_window_t window)
{
    forgetOutcome(xcb_clear_area_checked(m_connection, 0, window, 0, 0, 0, 0));
}

void PanelServer::flush()
{
    xcb_flush(m_connection);
}

void PanelServer::setCardinals(xcb_window_t window, const char *property, std::initializer_list<std::uint32_t> values)
{
    constexpr std::uint8_t bits = 32;
    forgetOutcome(xcb_change_property_checked(m_connection, XCB_PROP_MODE_REPLACE, window, m_atoms.atom(property),
                                              XCB_ATOM_CARDINAL, bits, static_cast<std::uint32_t>(values.size()),
                                              values.begin()));
}

void PanelServer::setAtoms(xcb_window_t window, const char *property, std::initializer_list<const char *> names)
{
    std::vector<xcb_atom_t> atoms;
    for (const char *name : names) {
        atoms.push_back(m_atoms.atom(name));
    }
    constexpr std::uint8_t bits = 32;
    forgetOutcome(xcb_change_property_checked(m_connection, XCB_PROP_MODE_REPLACE, window, m_atoms.atom(property),
                                              XCB_ATOM_ATOM, bits, static_cast<std::uint32_t>(atoms.size()),
                                              atoms.data()));
}

void PanelServer::forgetOutcome(xcb_void_cookie_t cookie)
{
    xcb_discard_reply(m_connection, cookie.sequence);
}

} // namespace lumenfold
