#include "platform/x11/X11Connection.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

#include <algorithm>
#include <utility>

#include <xcb/xcbext.h>

namespace lumenfold::x11 {

struct EventSubscription::Registry {
    struct Entry {
        std::uint64_t id = 0;
        std::uint8_t responseType = 0;
        std::shared_ptr<const EventHandler> handler;
    };
    std::uint64_t lastId = 0;
    std::vector<Entry> entries;

    void remove(std::uint64_t id)
    {
        std::erase_if(entries, [id](const Entry &entry) { return entry.id == id; });
    }
};

EventSubscription::EventSubscription(std::weak_ptr<Registry> registry, std::uint64_t id)
    : m_registry(std::move(registry)), m_id(id)
{
}

EventSubscription &EventSubscription::operator=(EventSubscription &&other) noexcept
{
    std::swap(m_registry, other.m_registry);
    std::swap(m_id, other.m_id);
    return *this;
}

EventSubscription::~EventSubscription()
{
    if (const auto registry = m_registry.lock()) {
        registry->remove(m_id);
    }
}

std::unique_ptr<X11Connection> X11Connection::open(const QByteArray &displayName)
{
    int screenNumber = 0;
    xcb_connection_t *connection =
        xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int skipped = 0; skipped < screenNumber && screens.rem > 1; ++skipped) {
        xcb_screen_next(&screens);
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screenNumber, screens.data));
}

X11Connection::X11Connection(xcb_connection_t *connection, int screenNumber, xcb_screen_t *screen)
    : m_connection(connection)
    , m_screenNumber(screenNumber)
    , m_screen(screen)
    , m_atoms(connection)
    , m_registry(std::make_shared<EventSubscription::Registry>())
    , m_notifier(std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { dispatch(Source::socket); });
    // Waiting for a reply reads events off the socket too; they would stay in xcb's queue with nothing to wake us. A
    // loop that never sleeps only ever says that it is awake.
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    const auto dispatchQueued = [this] {
        xcb_flush(m_connection);
        dispatch(Source::queue);
    };
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, dispatchQueued);
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, dispatchQueued);
}

X11Connection::~X11Connection()
{
    m_isClosing = true;
    m_notifier.reset();
    resumeAll();
    xcb_disconnect(m_connection);
}

bool X11Connection::isUsable() const
{
    return !m_isClosing && xcb_connection_has_error(m_connection) == 0;
}

const xcb_query_extension_reply_t *X11Connection::extension(xcb_extension_t *extension) const
{
    const xcb_query_extension_reply_t *answer = xcb_get_extension_data(m_connection, extension);
    return answer != nullptr && answer->present != 0 ? answer : nullptr;
}

EventSubscription X11Connection::subscribe(std::uint8_t responseType, EventHandler handler)
{
    const std::uint64_t id = ++m_registry->lastId;
    m_registry->entries.push_back({id, responseType, std::make_shared<const EventHandler>(std::move(handler))});
    return {m_registry, id};
}

void X11Connection::addRootEventMask(std::uint32_t mask)
{
    if ((m_rootEventMask | mask) == m_rootEventMask) {
        return;
    }
    m_rootEventMask |= mask;
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &m_rootEventMask);
}

std::optional<PlatformError> X11Connection::check(xcb_void_cookie_t cookie) const
{
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
    if (error) {
        return platformError(*error);
    }
    return isUsable() ? std::nullopt : std::optional(connectionLost());
}

QCoro::Task<std::optional<PlatformError>> X11Connection::checkLater(xcb_void_cookie_t cookie)
{
    const auto following = xcb_get_input_focus(m_connection);
    const auto answer = co_await replyLater<xcb_get_input_focus_reply_t>(following.sequence);
    if (!answer) {
        co_return answer.error();
    }
    // The following request is answered, so this does not wait.
    co_return check(cookie);
}

void X11Connection::dispatch(Source source)
{
    const QPointer<X11Connection> self(this);
    while (true) {
        const XcbPointer<xcb_generic_event_t> event(source == Source::socket ? xcb_poll_for_event(m_connection)
                                                                             : xcb_poll_for_queued_event(m_connection));
        if (!event) {
            break;
        }
        deliver(*event);
        if (!self) {
            return;
        }
    }
    resumeAnswered();
    if (self && m_notifier->isEnabled() && !isUsable()) {
        m_notifier->setEnabled(false);
        resumeAll();
        if (self) {
            Q_EMIT lost();
        }
    }
}

void X11Connection::deliver(const xcb_generic_event_t &event)
{
    constexpr std::uint8_t sentEventBit = 0x80;
    const auto responseType = static_cast<std::uint8_t>(event.response_type & ~sentEventBit);
    if (responseType == 0) {
        // An error of a request that nobody waits for: it was about something that is gone, or its effect will be
        // missed.
        return;
    }
    const std::shared_ptr<EventSubscription::Registry> registry = m_registry;
    std::vector<std::uint64_t> receivers;
    for (const auto &entry : registry->entries) {
        if (entry.responseType == responseType) {
            receivers.push_back(entry.id);
        }
    }
    for (const std::uint64_t id : receivers) {
        const auto entry = std::ranges::find(registry->entries, id, &EventSubscription::Registry::Entry::id);
        if (entry != registry->entries.end()) {
            const auto handler = entry->handler;
            (*handler)(event);
        }
    }
}

void X11Connection::resumeAnswered()
{
    const QPointer<X11Connection> self(this);
    while (self) {
        const auto answered = std::ranges::find_if(m_pending, [](PendingReply *pending) { return pending->poll(); });
        if (answered == m_pending.end()) {
            return;
        }
        PendingReply *pending = *answered;
        m_pending.erase(answered);
        pending->m_waiting.resume();
    }
}

void X11Connection::resumeAll()
{
    for (PendingReply *pending : std::exchange(m_pending, {})) {
        pending->m_connection.clear();
        pending->m_waiting.resume();
    }
}

X11Connection::PendingReply::PendingReply(X11Connection &connection, unsigned sequence)
    : m_connection(&connection), m_sequence(sequence)
{
}

X11Connection::PendingReply::~PendingReply()
{
    if (m_connection) {
        std::erase(m_connection->m_pending, this);
    }
}

void X11Connection::PendingReply::await_suspend(std::coroutine_handle<> waiting)
{
    m_waiting = waiting;
    m_connection->m_pending.push_back(this);
    xcb_flush(m_connection->m_connection);
}

bool X11Connection::PendingReply::poll()
{
    if (m_reply || m_error || !m_connection || !m_connection->isUsable()) {
        return true;
    }
    void *reply = nullptr;
    xcb_generic_error_t *error = nullptr;
    if (xcb_poll_for_reply(m_connection->m_connection, m_sequence, &reply, &error) == 0) {
        return false;
    }
    m_reply.reset(reply);
    m_error.reset(error);
    return true;
}

} // namespace lumenfold::x11
