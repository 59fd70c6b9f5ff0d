#pragma once

#include "platform/x11/X11Connection.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <vector>

namespace lumenfold {

/// One of the server's monitors, which is what the user calls a screen.
struct X11Monitor {
    QString name;
    /// Root pixels.
    QRect frame;
    bool isPrimary = false;

    friend bool operator==(const X11Monitor &, const X11Monitor &) = default;
};

/// The monitors as RandR 1.5 lists them, and the news about them. The toolkit reads the same list but misses changes:
/// it does not notice a screen that only moves, nor one that grows beside another.
class X11Monitors : public QObject {
    Q_OBJECT

public:
    /// `connection` must outlive this.
    explicit X11Monitors(x11::X11Connection &connection);

    /// The primary one first. Waits for the server. Empty when it has no RandR 1.5.
    [[nodiscard]] std::vector<X11Monitor> read() const;

Q_SIGNALS:
    /// Something about the outputs changed, maybe nothing that matters.
    void changed();

private:
    x11::X11Connection &m_connection;
    bool m_isAvailable = false;
    std::vector<x11::EventSubscription> m_subscriptions;
};

} // namespace lumenfold
