#include "platform/screens/X11Screens.h"

#include "platform/screens/DisplayIdentity.h"

#include <QCursor>
#include <QGuiApplication>
#include <QHash>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <xcb/randr.h>

namespace lumenfold {
namespace {

using namespace x11;

/// The rectangle in pixels of every monitor that RandR 1.5 knows, by its name's atom.
QHash<xcb_atom_t, QRect> monitors(X11Connection &connection)
{
    QHash<xcb_atom_t, QRect> found;
    if (connection.extension(&xcb_randr_id) == nullptr) {
        return found;
    }
    constexpr std::uint8_t activeOnly = 1;
    const auto answer = connection.reply(xcb_randr_get_monitors_reply,
                                         xcb_randr_get_monitors(connection.xcb(), connection.root(), activeOnly));
    if (!answer) {
        return found;
    }
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(answer->get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor)) {
        found.insert(monitor.data->name,
                     QRect(monitor.data->x, monitor.data->y, monitor.data->width, monitor.data->height));
    }
    return found;
}

/// The toolkit rounds a screen's size when it divides it by the scale; RandR has the exact size. The two are told of a
/// change one after the other, so RandR only counts where it agrees with the toolkit.
QRect nativeGeometry(const QScreen &screen, const QRect &monitor)
{
    const double scale = screen.devicePixelRatio();
    const QSize size = (QSizeF(screen.geometry().size()) * scale).toSize();
    const QRect computed(screen.geometry().topLeft(), size);
    const bool agree = monitor.topLeft() == computed.topLeft() &&
                       std::abs(monitor.width() - computed.width()) < scale &&
                       std::abs(monitor.height() - computed.height()) < scale;
    return agree ? monitor : computed;
}

QList<QScreen *> screensInOrder()
{
    QList<QScreen *> screens = QGuiApplication::screens();
    std::ranges::stable_partition(screens, [](QScreen *screen) { return screen == QGuiApplication::primaryScreen(); });
    return screens;
}

} // namespace

X11Screens::X11Screens(X11Connection &connection) : m_connection(connection), m_docks(connection)
{
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
    const QHash<xcb_atom_t, QRect> exact = monitors(m_connection);
    std::vector<ScreenGeometry> geometries;
    std::vector<DisplayIdentity> identities;
    for (const QScreen *screen : screensInOrder()) {
        const QRect monitor = exact.value(m_connection.atom(screen->name().toUtf8().constData()));
        geometries.push_back({.displayID = 0,
                              .native = nativeGeometry(*screen, monitor),
                              .qt = screen->geometry(),
                              .scale = screen->devicePixelRatio()});
        identities.push_back({.name = screen->name(),
                              .manufacturer = screen->manufacturer(),
                              .model = screen->model(),
                              .serialNumber = screen->serialNumber()});
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
