#pragma once

#include "platform/statusitem/MenuPopup.h"
#include "platform/statusitem/StatusIconPainter.h"
#include "platform/statusitem/StatusItem.h"
#include "platform/statusitem/StatusItemSurroundings.h"
#include "platform/statusitem/notifier/StatusNotifier.h"
#include "platform/statusitem/notifier/SymbolicIconFolder.h"
#include "platform/statusitem/xembed/XEmbedIcon.h"

#include <QBasicTimer>
#include <QObject>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

namespace lumenfold {

/// The status item on a Linux desktop: on the session bus for panels that read it there, and in the X server's tray
/// where no panel does. Which of the two shows it can change at any time.
class DesktopStatusItem : public QObject, public StatusItem {
    Q_OBJECT

public:
    /// From root pixels to the toolkit's coordinates.
    using ToToolkit = std::function<QRect(const QRect &rootPixels)>;

    /// Goes to the desktop in a later turn of the event loop, so that a start is not kept waiting. `connection`
    /// outlives it.
    DesktopStatusItem(StatusItemSurroundings surroundings, x11::X11Connection &connection, ToToolkit toToolkit);
    ~DesktopStatusItem() override;

    void setImage(const StatusImage &image) override;
    void setUpdateBadgeVisible(bool visible) override;
    void setMenu(Menu menu) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void begin();
    void showIcon();
    void chooseTray();
    void hovered(bool isInside, const QRect &place);

    const StatusItemSurroundings m_with;
    const SymbolicIconFolder m_iconFolder;
    x11::X11Connection &m_connection;
    const ToToolkit m_toToolkit;
    StatusIcon m_icon;
    Menu m_menu;
    MenuPopup m_popup;
    std::unique_ptr<StatusNotifier> m_notifier;
    std::unique_ptr<XEmbedIcon> m_trayIcon;
    /// Runs once, while nobody has answered whether a panel shows the item.
    QBasicTimer m_patience;
    QBasicTimer m_toolTip;
    QRect m_hoveredPlace;
};

} // namespace lumenfold
