#include "tests/support/desktop/TrayManager.h"

#include "tests/support/desktop/Pictures.h"

#include <stdexcept>

namespace lumenfold::test {
namespace {

constexpr int room = 8;

std::uint32_t pixelOf(const QColor &color)
{
    return color.rgb() & 0x00ffffffU;
}

xcb_visualid_t transparentVisual(const xcb_screen_t *screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth == 32 && xcb_depth_visuals_length(depths.data) > 0) {
            return xcb_depth_visuals(depths.data)->visual_id;
        }
    }
    throw std::runtime_error("the server has no transparent windows");
}

} // namespace

TrayManager::TrayManager(XServer &server, const TrayOptions &options)
    : m_server(server), m_connection(server.display()), m_options(options), m_iconSide(options.iconSide)
{
    xcb_connection_t *xcb = m_connection.get();
    m_window = xcb_generate_id(xcb);
    const std::uint32_t values[] = {pixelOf(options.ground), 1U, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    const auto side = static_cast<std::uint16_t>(m_iconSide);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(),
                      static_cast<std::int16_t>(options.place.x()), static_cast<std::int16_t>(options.place.y()),
                      static_cast<std::uint16_t>(room * side), side, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(xcb, m_window);
    if (options.visual == TrayOptions::Visual::transparent) {
        m_connection.setCardinals(m_window, "_NET_SYSTEM_TRAY_VISUAL", "VISUALID",
                                  {transparentVisual(m_connection.screen())});
    }
    if (options.foreground.isValid()) {
        const QRgba64 color = options.foreground.rgba64();
        m_connection.setCardinals(m_window, "_NET_SYSTEM_TRAY_COLORS", "CARDINAL",
                                  {color.red(), color.green(), color.blue(), 0, 0, 0, 0, 0, 0, 0, 0, 0});
    }
    const xcb_atom_t selection = m_connection.atom("_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(xcb, m_window, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_connection.root();
    message.type = m_connection.atom("MANAGER");
    message.data.data32[1] = selection;
    message.data.data32[2] = m_window;
    xcb_send_event(xcb, 0, m_connection.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    m_connection.sync();
}

TrayManager::~TrayManager()
{
    if (m_options.ending == TrayOptions::Ending::leavesIcons) {
        for (const xcb_window_t icon : m_icons) {
            xcb_reparent_window(m_connection.get(), icon, m_connection.root(), 0, 0);
        }
    }
    xcb_destroy_window(m_connection.get(), m_window);
    m_connection.sync();
}

void TrayManager::waitForIcons(qsizetype count)
{
    waitUntil(std::to_string(count) + " icons in the tray", [&] {
        readEvents();
        return m_icons.size() == count;
    });
}

QList<QRect> TrayManager::icons()
{
    readEvents();
    QList<QRect> frames;
    for (const xcb_window_t icon : m_icons) {
        frames.append(m_connection.frameOf(icon));
    }
    return frames;
}

QList<xcb_window_t> TrayManager::iconWindows()
{
    readEvents();
    return m_icons;
}

QImage TrayManager::picture(qsizetype icon)
{
    return rootPicture(m_server.connection(), icons().at(icon));
}

int TrayManager::depth(qsizetype icon)
{
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        m_connection.get(), xcb_get_geometry(m_connection.get(), iconWindows().at(icon)), nullptr));
    return geometry ? geometry->depth : 0;
}

void TrayManager::resizeIcons(int side)
{
    m_iconSide = side;
    const std::uint32_t size[] = {static_cast<std::uint32_t>(room * side), static_cast<std::uint32_t>(side)};
    xcb_configure_window(m_connection.get(), m_window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    placeIcons();
}

void TrayManager::readEvents()
{
    m_connection.sync();
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        switch (event->response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            constexpr std::uint32_t requestDock = 0;
            if (message->type == m_connection.atom("_NET_SYSTEM_TRAY_OPCODE") &&
                message->data.data32[1] == requestDock) {
                dock(message->data.data32[2]);
            }
            break;
        }
        case XCB_DESTROY_NOTIFY:
            m_icons.removeAll(reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get())->window);
            placeIcons();
            break;
        default:
            break;
        }
    }
}

void TrayManager::dock(xcb_window_t icon)
{
    xcb_reparent_window(m_connection.get(), icon, m_window, 0, 0);
    m_icons.append(icon);
    placeIcons();
    xcb_map_window(m_connection.get(), icon);
    m_connection.sync();
}

void TrayManager::placeIcons()
{
    for (qsizetype index = 0; index < m_icons.size(); ++index) {
        const std::uint32_t frame[] = {static_cast<std::uint32_t>(index * m_iconSide), 0,
                                       static_cast<std::uint32_t>(m_iconSide), static_cast<std::uint32_t>(m_iconSide)};
        xcb_configure_window(
            m_connection.get(), m_icons[index],
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, frame);
    }
    m_connection.sync();
}

} // namespace lumenfold::test
