#pragma once

#include "platform/x11/X11Atoms.h"
#include "platform/x11/X11Errors.h"
#include "platform/x11/XcbPointer.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <coroutine>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QCoroTask>

#include <xcb/xcb.h>

class QSocketNotifier;

namespace lumenfold::x11 {

using EventHandler = std::function<void(const xcb_generic_event_t &)>;

/// Keeps an event handler installed for as long as it lives; may outlive the connection.
class EventSubscription {
public:
    EventSubscription() = default;
    EventSubscription(EventSubscription &&other) noexcept = default;
    EventSubscription &operator=(EventSubscription &&other) noexcept;
    ~EventSubscription();

private:
    friend class X11Connection;
    struct Registry;
    EventSubscription(std::weak_ptr<Registry> registry, std::uint64_t id);
    std::weak_ptr<Registry> m_registry;
    std::uint64_t m_id = 0;
};

/// A connection of our own to the X server, beside the toolkit's, for what the toolkit does not do.
///
/// Main thread. Events are read when the event loop finds some and go to the subscribers of their type; requests are
/// flushed before the event loop sleeps, so nobody has to flush. No error ends the program: an error that nobody waits
/// for is dropped, and when the server closes the connection, every operation fails from then on.
///
/// Requests are sent with plain xcb on xcb(). A reply can be had in two ways: `reply()` waits for it and is for
/// start-up and for questions that the server answers at once; `co_await replyLater()` lets the event loop run
/// meanwhile.
class X11Connection : public QObject {
    Q_OBJECT

public:
    /// Opens `displayName`, or $DISPLAY when it is empty. Nothing when the server cannot be reached.
    [[nodiscard]] static std::unique_ptr<X11Connection> open(const QByteArray &displayName = {});
    ~X11Connection() override;

    /// Never null; after lost() all requests on it do nothing.
    [[nodiscard]] xcb_connection_t *xcb() const { return m_connection; }
    [[nodiscard]] const xcb_screen_t &screen() const { return *m_screen; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    /// The number of the X screen in $DISPLAY, as in the selection name _NET_WM_CM_S0.
    [[nodiscard]] int screenNumber() const { return m_screenNumber; }
    [[nodiscard]] bool isUsable() const;

    [[nodiscard]] X11Atoms &atoms() { return m_atoms; }
    [[nodiscard]] xcb_atom_t atom(const char *name) { return m_atoms.atom(name); }

    /// Null when the server does not have it. The first question about an extension waits for the server.
    [[nodiscard]] const xcb_query_extension_reply_t *extension(xcb_extension_t *extension) const;

    /// Calls `handler` for every event whose type is `responseType` (extension events: first_event + number; XInput2:
    /// XCB_GE_GENERIC), sent events included. What events come is up to the event masks that were selected.
    [[nodiscard]] EventSubscription subscribe(std::uint8_t responseType, EventHandler handler);

    /// Adds to the events that this connection gets for the root window. Masks only grow, because subscribers share
    /// them.
    void addRootEventMask(std::uint32_t mask);

    /// Waits for a reply: `reply(xcb_get_geometry_reply, cookie)`.
    template <typename Reply, typename Cookie>
    [[nodiscard]] Answer<Reply> reply(Reply *(*fetch)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
                                      Cookie cookie) const
    {
        xcb_generic_error_t *error = nullptr;
        XcbPointer<Reply> answer(fetch(m_connection, cookie, &error));
        return toAnswer<Reply>(std::move(answer), XcbPointer<xcb_generic_error_t>(error));
    }

    /// Waits for the end of a checked request without a reply. Nothing when it succeeded.
    [[nodiscard]] std::optional<PlatformError> check(xcb_void_cookie_t cookie) const;

    /// Forgets what will be answered, errors included.
    void discard(unsigned sequence) const { xcb_discard_reply(m_connection, sequence); }

private:
    /// What a coroutine waits on: the reply of one request, or its error, or the end of the connection.
    class PendingReply {
    public:
        PendingReply(X11Connection &connection, unsigned sequence);
        /// Moved only before anything waits on it: coroutines take their awaitables over.
        PendingReply(PendingReply &&other) noexcept = default;
        PendingReply &operator=(PendingReply &&other) = delete;
        ~PendingReply();

        [[nodiscard]] bool await_ready() { return poll(); }
        void await_suspend(std::coroutine_handle<> waiting);

    protected:
        friend class X11Connection;
        /// True when there is nothing more to wait for.
        bool poll();
        QPointer<X11Connection> m_connection;
        unsigned m_sequence;
        std::coroutine_handle<> m_waiting;
        XcbPointer<void> m_reply;
        XcbPointer<xcb_generic_error_t> m_error;
    };

    template <typename Reply>
    class TypedPendingReply : public PendingReply {
    public:
        using PendingReply::PendingReply;
        [[nodiscard]] Answer<Reply> await_resume()
        {
            return toAnswer<Reply>(XcbPointer<Reply>(static_cast<Reply *>(this->m_reply.release())),
                                   std::move(this->m_error));
        }
    };

public:
    /// `co_await connection.replyLater<xcb_get_geometry_reply_t>(cookie.sequence)`. When the connection breaks or this
    /// object is destroyed meanwhile, the answer is connectionLost() at once, and so is every further one: a coroutine
    /// that waits for replies only runs to its end while this object can still be touched.
    template <typename Reply>
    [[nodiscard]] TypedPendingReply<Reply> replyLater(unsigned sequence)
    {
        return TypedPendingReply<Reply>(*this, sequence);
    }

    /// The end of a checked request without a reply, while the event loop runs. Nothing when it succeeded.
    [[nodiscard]] QCoro::Task<std::optional<PlatformError>> checkLater(xcb_void_cookie_t cookie);

Q_SIGNALS:
    /// The server closed the connection.
    void lost();

private:
    X11Connection(xcb_connection_t *connection, int screenNumber, xcb_screen_t *screen);

    template <typename Reply>
    static Answer<Reply> toAnswer(XcbPointer<Reply> reply, XcbPointer<xcb_generic_error_t> error)
    {
        if (reply) {
            return reply;
        }
        return tl::unexpected(error ? platformError(*error) : connectionLost());
    }

    enum class Source { socket, queue };
    void dispatch(Source source);
    void deliver(const xcb_generic_event_t &event);
    void resumeAnswered();
    void resumeAll();

    xcb_connection_t *m_connection;
    int m_screenNumber;
    xcb_screen_t *m_screen;
    X11Atoms m_atoms;
    std::uint32_t m_rootEventMask = 0;
    bool m_isClosing = false;
    std::shared_ptr<EventSubscription::Registry> m_registry;
    std::vector<PendingReply *> m_pending;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace lumenfold::x11
