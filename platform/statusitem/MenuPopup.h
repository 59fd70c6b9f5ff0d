#pragma once

#include "platform/statusitem/StatusItem.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>

#include <functional>

class QMenu;
class QWidget;

namespace lumenfold {

/// The menu in a window of our own, where the desktop shows none itself.
class MenuPopup : public QObject {
    Q_OBJECT

public:
    /// `prepare` gives the window its colours.
    explicit MenuPopup(std::function<void(QWidget &menu)> prepare);
    ~MenuPopup() override;

    /// One that is open stays as it is.
    void setMenu(const Menu &menu) { m_menu = menu; }

    /// Opens the menu beside `anchor` (the toolkit's coordinates), or closes it if it is open.
    void toggle(const QRect &anchor);

private:
    std::function<void(QWidget &menu)> m_prepare;
    Menu m_menu;
    QPointer<QMenu> m_open;
};

/// Where a menu beside a status area's icon goes: beneath it, above it where there is no room, within the screen.
[[nodiscard]] QPoint menuPlace(const QRect &anchor, QSize menu, const QRect &screen);

/// The menu as the toolkit shows it. Its actions run in a later turn of the event loop.
void fillMenu(QMenu &into, const Menu &menu);

} // namespace lumenfold
