#include "platform/screens/X11Screens.h"

#include "platform/screens/DisplayIdentity.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <functional>
#include <utility>

namespace lumenfold {
namespace {

using namespace x11;

QScreen *screenNamed(const QString &name)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found = std::ranges::find(screens, name, &QScreen::name);
    return found == screens.end() ? nullptr : *found;
}

/// What the toolkit knows of the screen that it takes for this monitor. Right after a screen was plugged in it knows
/// none yet, and the main screen has to stand for it.
ScreenGeometry geometryOf(const X11Monitor &monitor)
{
    const QScreen *screen = screenNamed(monitor.name);
    const double scale = (screen == nullptr ? QGuiApplication::primaryScreen() : screen)->devicePixelRatio();
    const QRect computed(monitor.frame.topLeft(), (QSizeF(monitor.frame.size()) / scale).toSize());
    return {.displayID = 0,
            .native = monitor.frame,
            .qt = screen == nullptr ? computed : screen->geometry(),
            .scale = scale};
}

DisplayIdentity identityOf(const QString &name)
{
    const QScreen *screen = screenNamed(name);
    if (screen == nullptr) {
        return {.name = name};
    }
    return {.name = name,
            .manufacturer = screen->manufacturer(),
            .model = screen->model(),
            .serialNumber = screen->serialNumber()};
}

/// The toolkit's view, for servers that cannot list monitors.
std::vector<X11Monitor> monitorsOfTheToolkit()
{
    std::vector<X11Monitor> monitors;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QSize size = (QSizeF(screen->geometry().size()) * screen->devicePixelRatio()).toSize();
        monitors.push_back({.name = screen->name(),
                            .frame = QRect(screen->geometry().topLeft(), size),
                            .isPrimary = screen == QGuiApplication::primaryScreen()});
    }
    std::stable_partition(monitors.begin(), monitors.end(), std::mem_fn(&X11Monitor::isPrimary));
    return monitors;
}

} // namespace

X11Screens::X11Screens(X11Connection &connection)
    : m_connection(connection), m_docks(connection), m_monitors(connection)
{
    connect(&m_monitors, &X11Monitors::changed, this, &X11Screens::invalidate);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        watch(screen);
        invalidate();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &X11Screens::invalidate);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &X11Screens::invalidate);
    connect(&m_docks, &X11Docks::changed, this, &X11Screens::invalidate);
    for (QScreen *screen : QGuiApplication::screens()) {
        watch(screen);
    }
    m_told = all();
}

std::vector<Screen> X11Screens::all() const
{
    std::vector<Screen> screens;
    for (const auto &placed : space().screens()) {
        screens.push_back({.displayID = placed.displayID,
                           .frame = placed.frame,
                           .visibleFrame = visibleFrameOf(placed),
                           .backingScale = placed.scale});
    }
    return screens;
}

Point X11Screens::pointerLocation() const
{
    const auto pointer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.xcb(), m_connection.root()));
    if (!pointer) {
        return space().fromQt(QPointF(QCursor::pos()));
    }
    return space().fromNative(QPointF((*pointer)->root_x, (*pointer)->root_y));
}

Point X11Screens::fromToolkit(QPointF place) const
{
    return space().fromQt(place);
}

const ScreenSpace &X11Screens::space() const
{
    if (!m_space) {
        m_space = readSpace();
        const auto root =
            m_connection.reply(xcb_get_geometry_reply, xcb_get_geometry(m_connection.xcb(), m_connection.root()));
        m_rootSize = root ? QSize((*root)->width, (*root)->height) : QSize();
    }
    return *m_space;
}

void X11Screens::watch(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &X11Screens::invalidate);
    connect(screen, &QScreen::availableGeometryChanged, this, &X11Screens::invalidate);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &X11Screens::invalidate);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &X11Screens::invalidate);
}

void X11Screens::invalidate()
{
    m_space.reset();
    if (!std::exchange(m_isTellingPending, true)) {
        // One change of the set-up arrives as several signals, and the screens are half-changed between them.
        QMetaObject::invokeMethod(this, &X11Screens::tellIfChanged, Qt::QueuedConnection);
    }
}

void X11Screens::tellIfChanged()
{
    m_isTellingPending = false;
    std::vector<Screen> screens = all();
    if (std::exchange(m_told, screens) != screens) {
        Q_EMIT changed();
    }
}

ScreenSpace X11Screens::readSpace() const
{
    std::vector<X11Monitor> monitors = m_monitors.read();
    if (monitors.empty()) {
        monitors = monitorsOfTheToolkit();
    }
    std::vector<ScreenGeometry> geometries;
    std::vector<DisplayIdentity> identities;
    for (const X11Monitor &monitor : monitors) {
        geometries.push_back(geometryOf(monitor));
        identities.push_back(identityOf(monitor.name));
    }
    const std::vector<DisplayID> ids = displayIDsFor(identities);
    for (std::size_t index = 0; index < ids.size(); ++index) {
        geometries[index].displayID = ids[index];
    }
    return ScreenSpace(geometries);
}

Rect X11Screens::visibleFrameOf(const ScreenSpace::PlacedScreen &screen) const
{
    QRect free = freeOfDocks(screen.native, m_rootSize, m_docks.docks());
    const bool isOnlyScreen = space().screens().size() == 1;
    if (free == screen.native && isOnlyScreen && m_docks.workArea()) {
        // One work area for all screens together tells nothing about any of several.
        const QRect common = m_docks.workArea()->intersected(screen.native);
        free = common.isEmpty() ? free : common;
    }
    return ScreenSpace::fromNative(free, screen);
}

} // namespace lumenfold
