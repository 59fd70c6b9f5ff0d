#include "platform/statusitem/DesktopStatusItem.h"

#include "platform/appearance/Appearance.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QTimerEvent>
#include <QToolTip>

#include <chrono>
#include <utility>

namespace lumenfold {
namespace {

/// A panel that is there answers within milliseconds; one that hangs must not leave the user without an icon.
constexpr std::chrono::milliseconds patienceWithPanels{1000};
/// As for the toolkit's own tool tips.
constexpr std::chrono::milliseconds toolTipDelay{700};

/// What a panel writes with when it does not say it.
QColor writingIn(ColorScheme scheme)
{
    constexpr QColor darkWriting{35, 38, 41};
    constexpr QColor lightWriting{245, 245, 247};
    return scheme == ColorScheme::dark ? lightWriting : darkWriting;
}

} // namespace

DesktopStatusItem::DesktopStatusItem(StatusItemSurroundings surroundings, x11::X11Connection &connection,
                                     ToToolkit toToolkit)
    : m_with(std::move(surroundings))
    , m_iconFolder(m_with.iconFolder)
    , m_connection(connection)
    , m_toToolkit(std::move(toToolkit))
    , m_popup(m_with.prepareMenu)
{
    QMetaObject::invokeMethod(this, &DesktopStatusItem::begin, Qt::QueuedConnection);
}

DesktopStatusItem::~DesktopStatusItem()
{
    QToolTip::hideText();
}

void DesktopStatusItem::setImage(const StatusImage &image)
{
    m_icon.image = image;
    showIcon();
}

void DesktopStatusItem::setUpdateBadgeVisible(bool visible)
{
    if (std::exchange(m_icon.hasBadge, visible) != visible) {
        showIcon();
    }
}

void DesktopStatusItem::setMenu(Menu menu)
{
    m_menu = std::move(menu);
    m_popup.setMenu(m_menu);
    if (m_notifier) {
        m_notifier->setMenu(m_menu);
    }
}

void DesktopStatusItem::begin()
{
    m_notifier = std::make_unique<StatusNotifier>(QDBusConnection::sessionBus());
    m_notifier->onStandingChanged = [this] { chooseTray(); };
    m_notifier->onMenuRequested = [this](QPoint place) { m_popup.toggle(m_toToolkit(QRect(place, QSize(1, 1)))); };
    m_notifier->setMenu(m_menu);
    m_trayIcon = std::make_unique<XEmbedIcon>(m_connection);
    m_trayIcon->onClicked = [this](const QRect &place) {
        hovered(false, {});
        m_popup.toggle(m_toToolkit(place));
    };
    m_trayIcon->onHovered = [this](bool isInside, const QRect &place) { hovered(isInside, place); };
    connect(&m_with.appearance, &Appearance::changed, this, &DesktopStatusItem::showIcon);
    showIcon();
    m_patience.start(static_cast<int>(patienceWithPanels.count()), this);
    chooseTray();
}

void DesktopStatusItem::showIcon()
{
    if (!m_notifier) {
        return;
    }
    const QColor writing = writingIn(m_with.appearance.colorScheme());
    m_notifier->setPicture({
        .iconName = m_iconFolder.nameOf(m_icon, writing),
        .iconThemePath = m_iconFolder.path(),
        .pixmaps = notifierPixmaps(m_icon, writing),
        .accessibilityDescription = m_icon.image.accessibilityDescription,
    });
    m_trayIcon->setFallbackColor(writing);
    m_trayIcon->setIcon(m_icon);
}

void DesktopStatusItem::chooseTray()
{
    switch (m_notifier->standing()) {
    case StatusNotifier::Standing::unknown:
        m_trayIcon->setWanted(!m_patience.isActive());
        return;
    case StatusNotifier::Standing::shown:
        m_trayIcon->setWanted(false);
        break;
    case StatusNotifier::Standing::notShown:
        m_trayIcon->setWanted(true);
        break;
    }
    m_patience.stop();
}

void DesktopStatusItem::hovered(bool isInside, const QRect &place)
{
    if (isInside) {
        m_hoveredPlace = place;
        m_toolTip.start(static_cast<int>(toolTipDelay.count()), this);
    } else {
        m_toolTip.stop();
        QToolTip::hideText();
    }
}

void DesktopStatusItem::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_patience.timerId()) {
        m_patience.stop();
        chooseTray();
    } else if (event->timerId() == m_toolTip.timerId()) {
        m_toolTip.stop();
        QToolTip::showText(m_toToolkit(m_hoveredPlace).center(), QGuiApplication::applicationDisplayName());
    }
}

} // namespace lumenfold
