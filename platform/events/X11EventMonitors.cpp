#include "platform/events/X11EventMonitors.h"

#include "platform/events/FixedPoint.h"
#include "platform/x11/QtWindows.h"

#include <QDebug>
#include <QGuiApplication>
#include <QMetaObject>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include <xcb/xinput.h>

namespace lumenfold {
namespace {

/// The first version whose raw events come also while another program holds the pointer.
constexpr std::uint16_t majorVersion = 2;
constexpr std::uint16_t minorVersion = 1;

constexpr std::uint16_t anyButton = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

/// Window managers put a window of ours into a few of theirs at most.
constexpr int deepestFrame = 8;

struct Selection {
    xcb_input_event_mask_t head{};
    std::uint32_t mask = 0;
};

} // namespace

class X11EventMonitors::Installed : public EventMonitor {
public:
    Installed(X11EventMonitors &monitors, const Watcher *watcher) : m_monitors(&monitors), m_watcher(watcher) {}
    ~Installed() override
    {
        if (m_monitors) {
            m_monitors->remove(m_watcher);
        }
    }

private:
    QPointer<X11EventMonitors> m_monitors;
    const Watcher *m_watcher;
};

X11EventMonitors::X11EventMonitors(x11::X11Connection &connection, const X11Screens &screens)
    : m_connection(connection), m_screens(screens), m_axes(connection)
{
    const auto *extension = connection.extension(&xcb_input_id);
    const auto version = extension == nullptr
                             ? nullptr
                             : connection
                                   .reply(xcb_input_xi_query_version_reply,
                                          xcb_input_xi_query_version(connection.xcb(), majorVersion, minorVersion))
                                   .value_or(nullptr);
    if (!version || std::pair(version->major_version, version->minor_version) < std::pair(majorVersion, minorVersion)) {
        qWarning().noquote().nospace()
            << "LumenFold events: the X server has no input extension 2.1, the pointer is not watched";
        return;
    }
    m_extension = extension->major_opcode;
    m_subscription = connection.subscribe(XCB_GE_GENERIC, [this](const xcb_generic_event_t &event) { noticed(event); });
}

X11EventMonitors::~X11EventMonitors()
{
    m_watchers.clear();
    select();
}

std::unique_ptr<EventMonitor> X11EventMonitors::addGlobalMonitor(std::uint32_t mask, Handler handler)
{
    return add(Reach::global, mask, std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::addLocalMonitor(std::uint32_t mask, Handler handler)
{
    return add(Reach::local, mask, std::move(handler));
}

std::unique_ptr<EventMonitor> X11EventMonitors::add(Reach reach, std::uint32_t mask, Handler handler)
{
    m_watchers.push_back(std::make_shared<const Watcher>(Watcher{reach, mask, std::move(handler)}));
    select();
    return std::make_unique<Installed>(*this, m_watchers.back().get());
}

void X11EventMonitors::remove(const Watcher *watcher)
{
    std::erase_if(m_watchers, [watcher](const auto &entry) { return entry.get() == watcher; });
    select();
}

void X11EventMonitors::select()
{
    std::uint32_t wanted = 0;
    for (const auto &watcher : m_watchers) {
        if ((watcher->mask & eventMask(PointerEventType::mouseMoved)) != 0) {
            wanted |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
        }
        if ((watcher->mask & eventMask(PointerEventType::scrollWheel)) != 0) {
            wanted |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                      XCB_INPUT_XI_EVENT_MASK_DEVICE_CHANGED;
        }
    }
    if (m_extension == 0 || wanted == m_selected) {
        return;
    }
    m_selected = wanted;
    m_axes.forget();
    const Selection selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, wanted};
    xcb_input_xi_select_events(m_connection.xcb(), m_connection.root(), 1, &selection.head);
    // What happens from now on counts, also when the event loop is busy for a while.
    xcb_flush(m_connection.xcb());
}

void X11EventMonitors::noticed(const xcb_generic_event_t &event)
{
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if (generic.extension != m_extension) {
        return;
    }
    switch (generic.event_type) {
    case XCB_INPUT_DEVICE_CHANGED:
        m_axes.forget();
        break;
    case XCB_INPUT_RAW_MOTION: {
        const auto &motion = reinterpret_cast<const xcb_input_raw_motion_event_t &>(event);
        const std::vector<ScrollAxis> &axes = m_axes.of(motion.sourceid);
        const auto movements = movementsIn(event);
        if (movesPointer(axes, movements)) {
            moved(motion.time);
        }
        if (const auto delta = smoothScroll(axes, movements)) {
            scrolled(*delta, motion.time);
        }
        break;
    }
    case XCB_INPUT_RAW_BUTTON_PRESS: {
        const auto &press = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
        if (const auto delta = wheelScroll(m_axes.of(press.sourceid), press.detail)) {
            scrolled(*delta, press.time);
        }
        break;
    }
    default:
        break;
    }
}

std::span<const AxisMovement> X11EventMonitors::movementsIn(const xcb_generic_event_t &event)
{
    const auto *motion = reinterpret_cast<const xcb_input_raw_button_press_event_t *>(&event);
    const std::uint32_t *masks = xcb_input_raw_button_press_valuator_mask(motion);
    const xcb_input_fp3232_t *values = xcb_input_raw_button_press_axisvalues(motion);
    m_movements.clear();
    constexpr int bits = 32;
    for (int word = 0; word < motion->valuators_len; ++word) {
        for (std::uint32_t rest = masks[word]; rest != 0; rest &= rest - 1) {
            const auto number = static_cast<std::uint16_t>(word * bits + std::countr_zero(rest));
            m_movements.push_back({.number = number, .value = toDouble(*values++)});
        }
    }
    return m_movements;
}

void X11EventMonitors::moved(std::uint32_t serverTime)
{
    std::erase_if(m_pending, [](const PointerEvent &event) { return event.type == PointerEventType::mouseMoved; });
    m_pending.push_back({.type = PointerEventType::mouseMoved, .timestamp = m_clock.seconds(serverTime)});
    deliverSoon();
}

void X11EventMonitors::scrolled(const ScrollDelta &delta, std::uint32_t serverTime)
{
    m_pending.push_back({.type = PointerEventType::scrollWheel,
                         .scrollingDeltaX = delta.x,
                         .scrollingDeltaY = delta.y,
                         .timestamp = m_clock.seconds(serverTime)});
    deliverSoon();
}

void X11EventMonitors::deliverSoon()
{
    if (m_pending.size() == 1) {
        QMetaObject::invokeMethod(this, &X11EventMonitors::deliver, Qt::QueuedConnection);
    }
}

void X11EventMonitors::deliver()
{
    const std::vector<PointerEvent> events = std::exchange(m_pending, {});
    if (m_watchers.empty()) {
        return;
    }
    const auto pointer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.xcb(), m_connection.root()));
    if (!pointer) {
        return;
    }
    const Point place = m_screens.space().fromNative(QPointF((*pointer)->root_x, (*pointer)->root_y));
    const Reach reach = reachOf((*pointer)->child, place);
    const bool isDragging = ((*pointer)->mask & anyButton) != 0;
    const QPointer<X11EventMonitors> self(this);
    for (PointerEvent event : events) {
        if (event.type == PointerEventType::mouseMoved && isDragging) {
            continue;
        }
        event.location = place;
        const auto watchers = m_watchers;
        for (const auto &watcher : watchers) {
            // One handler may remove another's monitor.
            const bool isInstalled = std::ranges::find(m_watchers, watcher) != m_watchers.end();
            if (isInstalled && watcher->reach == reach && (watcher->mask & eventMask(event.type)) != 0) {
                watcher->handler(event);
            }
            if (!self) {
                return;
            }
        }
    }
}

X11EventMonitors::Reach X11EventMonitors::reachOf(xcb_window_t topLevel, Point place) const
{
    const auto own = x11::qtResources();
    if (!own) {
        return Reach::global;
    }
    if (own->contains(topLevel)) {
        return Reach::local;
    }
    // It may be the frame that a window manager put around one of ours. Asking is needed only near one.
    const QPoint toolkitPlace = m_screens.space().toQt(place).toPoint();
    const auto windows = QGuiApplication::topLevelWindows();
    const bool isNearOwn = std::ranges::any_of(windows, [&](const QWindow *window) {
        return window->isVisible() && window->frameGeometry().contains(toolkitPlace);
    });
    xcb_window_t window = isNearOwn ? topLevel : XCB_NONE;
    for (int depth = 0; window != XCB_NONE && depth < deepestFrame; ++depth) {
        if (own->contains(window)) {
            return Reach::local;
        }
        const auto pointer = m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.xcb(), window));
        window = pointer ? (*pointer)->child : XCB_NONE;
    }
    return Reach::global;
}

} // namespace lumenfold
