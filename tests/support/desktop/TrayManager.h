#pragma once

#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/XServer.h"

#include <QColor>
#include <QList>
#include <QPoint>
#include <QRect>

namespace lumenfold::test {

struct TrayOptions {
    /// Root pixels, origin top left; room for several icons beside each other.
    QPoint place{400, 0};
    int iconSide = 24;
    QColor ground = Qt::white;
    /// What _NET_SYSTEM_TRAY_VISUAL asks of the icons.
    enum class Visual { notSaid, transparent } visual = Visual::notSaid;
    /// What _NET_SYSTEM_TRAY_COLORS says first; invalid for not said.
    QColor foreground{};
    /// What becomes of the icons when the tray ends.
    enum class Ending { destroysIcons, leavesIcons } ending = Ending::destroysIcons;
};

/// An XEmbed system tray, as panels have them. It takes up icons while the test waits for something.
class TrayManager {
public:
    /// Holds the tray's selection when the constructor returns.
    explicit TrayManager(XServer &server, const TrayOptions &options = {});
    ~TrayManager();
    TrayManager(const TrayManager &) = delete;
    TrayManager &operator=(const TrayManager &) = delete;

    /// Returns when there are as many icons.
    void waitForIcons(qsizetype count);
    /// Where the icons are; root pixels.
    [[nodiscard]] QList<QRect> icons();
    [[nodiscard]] QList<xcb_window_t> iconWindows();
    /// What is seen there.
    [[nodiscard]] QImage picture(qsizetype icon = 0);
    [[nodiscard]] int depth(qsizetype icon = 0);
    void resizeIcons(int side);

private:
    void readEvents();
    void dock(xcb_window_t icon);
    void placeIcons();

    XServer &m_server;
    XConnection m_connection;
    const TrayOptions m_options;
    int m_iconSide;
    xcb_window_t m_window = XCB_NONE;
    QList<xcb_window_t> m_icons;
};

} // namespace lumenfold::test
