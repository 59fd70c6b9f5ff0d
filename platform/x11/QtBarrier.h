#pragma once

#include "platform/x11/X11Connection.h"

#include <QFuture>
#include <QPromise>

#include <deque>

namespace lumenfold::x11 {

/// Tells when the server has done everything that the toolkit has asked for so far. The server promises no order
/// between connections, so without this a window that the toolkit has just hidden may still be there for ours.
class QtBarrier {
public:
    /// `connection` must outlive this.
    explicit QtBarrier(X11Connection &connection);
    ~QtBarrier();
    QtBarrier(const QtBarrier &) = delete;
    QtBarrier &operator=(const QtBarrier &) = delete;

    /// Finished when the toolkit's requests until now are done; at once when the toolkit is not on X11. Cancelled when
    /// this object goes away first.
    [[nodiscard]] QFuture<void> passed();

private:
    X11Connection &m_connection;
    /// The toolkit changes a property of this window, and we hear of it in the order of its requests.
    xcb_window_t m_window;
    std::deque<QPromise<void>> m_waiting;
    EventSubscription m_subscription;
};

} // namespace lumenfold::x11
