#include "platform/session/X11Backend.h"

#include "platform/events/X11EventMonitors.h"
#include "platform/keyboard/x11/X11KeyboardRouter.h"
#include "platform/panels/X11PanelFactory.h"
#include "platform/pasteboard/qt/QtPasteboard.h"
#include "platform/permissions/X11Permissions.h"
#include "platform/screencapture/OwnWindowTraces.h"
#include "platform/screencapture/X11ScreenshotManager.h"
#include "platform/screens/X11Screens.h"
#include "platform/statusitem/DesktopStatusItem.h"
#include "platform/windowlist/X11WindowList.h"
#include "platform/x11/X11Connection.h"

#include <xcb/xcb.h>

#include <utility>

namespace lumenfold {
namespace {

/// In the order in which they are made; they go in the opposite order.
class X11Services : public PlatformServices {
public:
    X11Services(std::unique_ptr<x11::X11Connection> connection, std::unique_ptr<x11::X11Connection> panelConnection,
                std::unique_ptr<x11::X11KeyboardRouter> keyboard)
        : m_connection(std::move(connection))
        , m_keyboard(std::move(keyboard))
        , m_panels(std::move(panelConnection),
                   {.taps = m_keyboard->taps(),
                    .screens = m_screens,
                    .onLeftWithoutTrace = [this](std::uint32_t window) { m_traces.leftWithoutTrace(window); }})
    {
    }

    KeyEventTapService &keyEventTaps() override { return m_keyboard->taps(); }
    HotKeyService &hotKeys() override { return m_keyboard->hotKeys(); }
    Screens &screens() override { return m_screens; }
    ScreenshotManager &screenshots() override { return m_screenshots; }
    WindowList &windowList() override { return m_windowList; }
    PanelFactory &panels() override { return m_panels; }
    EventMonitors &eventMonitors() override { return m_eventMonitors; }
    Pasteboard &pasteboard() override { return m_pasteboard; }
    Permissions &permissions() override { return m_permissions; }
    std::unique_ptr<StatusItem> makeStatusItem(StatusItemSurroundings surroundings) override
    {
        return std::make_unique<DesktopStatusItem>(
            std::move(surroundings), *m_connection, [this](const QRect &rootPixels) {
                const ScreenSpace &space = m_screens.space();
                return space.toQt(space.fromNative(QRectF(rootPixels))).toAlignedRect();
            });
    }

private:
    std::unique_ptr<x11::X11Connection> m_connection;
    std::unique_ptr<x11::X11KeyboardRouter> m_keyboard;
    X11Screens m_screens{*m_connection};
    OwnWindowTraces m_traces;
    X11ScreenshotManager m_screenshots{*m_connection, m_screens, m_traces};
    X11WindowList m_windowList{*m_connection, m_screens};
    X11PanelFactory m_panels;
    X11EventMonitors m_eventMonitors{*m_connection, m_screens};
    QtPasteboard m_pasteboard;
    X11Permissions m_permissions;
};

} // namespace

QString X11Backend::name() const
{
    return QStringLiteral("x11");
}

bool X11Backend::applies(const SessionEnvironment &session) const
{
    return !session.x11Display.isEmpty();
}

tl::expected<void, QString> X11Backend::check(const SessionEnvironment &session) const
{
    if (session.x11Display.isEmpty()) {
        return tl::unexpected(QStringLiteral("there is no X server to run on (DISPLAY is not set)"));
    }
    xcb_connection_t *connection = xcb_connect(session.x11Display.constData(), nullptr);
    const bool isReachable = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!isReachable) {
        return tl::unexpected(
            QStringLiteral("the X server %1 cannot be reached").arg(QString::fromLocal8Bit(session.x11Display)));
    }
    return {};
}

QByteArray X11Backend::toolkitPlatform() const
{
    return "xcb";
}

tl::expected<std::unique_ptr<PlatformServices>, QString> X11Backend::connect() const
{
    auto connection = x11::X11Connection::open();
    auto panelConnection = x11::X11Connection::open();
    auto keyboard = x11::X11KeyboardRouter::start();
    if (!connection || !panelConnection || !keyboard) {
        return tl::unexpected(QStringLiteral("the X server takes no more connections or lacks the XKB extension"));
    }
    return std::make_unique<X11Services>(std::move(connection), std::move(panelConnection), std::move(keyboard));
}

} // namespace lumenfold
