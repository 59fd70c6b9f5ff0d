#pragma once

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QString>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace lumenfold::test {

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};

/// What xcb's reply functions return, freed at the end of its scope.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

/// One client of the X server, and the few questions that every test asks.
class XConnection {
public:
    /// Throws std::runtime_error when there is no such display.
    explicit XConnection(const QByteArray &display);
    ~XConnection();
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

    [[nodiscard]] xcb_connection_t *get() const { return m_connection; }
    [[nodiscard]] xcb_screen_t *screen() const { return m_screen; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }

    [[nodiscard]] xcb_atom_t atom(const char *name) const;
    [[nodiscard]] QString atomName(xcb_atom_t atom) const;
    /// Everything asked for so far has been done when this returns.
    void sync() const;

    /// Also true for an empty one.
    [[nodiscard]] bool hasProperty(xcb_window_t window, const char *name) const;
    /// Empty when the window or the property is not there.
    [[nodiscard]] QByteArray property(xcb_window_t window, const char *name) const;
    [[nodiscard]] QList<quint32> cardinals(xcb_window_t window, const char *name) const;
    void setProperty(xcb_window_t window, const char *name, const char *type, const QByteArray &bytes) const;
    void setCardinals(xcb_window_t window, const char *name, const char *type, const QList<quint32> &values) const;
    /// An EWMH request to the window manager about `window`.
    void sendToRoot(xcb_window_t window, const char *message, const QList<quint32> &data) const;

    /// Of the window's inside, in root pixels.
    [[nodiscard]] QRect frameOf(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t focusedWindow() const;

private:
    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
};

} // namespace lumenfold::test
