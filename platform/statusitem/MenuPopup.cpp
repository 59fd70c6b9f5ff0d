#include "platform/statusitem/MenuPopup.h"

#include "platform/statusitem/MenuText.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QProxyStyle>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

/// The toolkit's own, without the bright shadow of disabled entries, which blurs them on a dark ground.
class MenuStyle : public QProxyStyle {
public:
    explicit MenuStyle(QObject *menu) : QProxyStyle(QApplication::style()->name()) { setParent(menu); }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override
    {
        return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

} // namespace

QPoint menuPlace(const QRect &anchor, QSize menu, const QRect &screen)
{
    int y = anchor.bottom() + 1;
    if (y + menu.height() > screen.bottom() + 1) {
        y = anchor.top() - menu.height();
    }
    const auto within = [](int wanted, int first, int length, int room) {
        return std::max(first, std::min(wanted, first + room - length));
    };
    return {within(anchor.left(), screen.left(), menu.width(), screen.width()),
            within(y, screen.top(), menu.height(), screen.height())};
}

void fillMenu(QMenu &into, const Menu &menu)
{
    into.setStyle(new MenuStyle(&into));
    for (const MenuItem &item : menu) {
        if (item.kind == MenuItem::Kind::separator) {
            into.addSeparator();
            continue;
        }
        // What follows a tab stands where shortcuts stand. A shortcut of the action's own would want to be heard.
        const QString key = shortcutText(item);
        QAction *action = into.addAction(plainLabel(item.title, u'&') + (key.isEmpty() ? QString() : u'\t' + key));
        action->setEnabled(item.isEnabled);
        if (!item.image.isNull()) {
            action->setIcon(QIcon(QPixmap::fromImage(item.image)));
            action->setIconVisibleInMenu(true);
        }
        if (item.action) {
            QObject::connect(action, &QAction::triggered, QCoreApplication::instance(), item.action,
                             Qt::QueuedConnection);
        }
    }
}

MenuPopup::MenuPopup(std::function<void(QWidget &menu)> prepare) : m_prepare(std::move(prepare)) {}

MenuPopup::~MenuPopup()
{
    delete m_open;
}

void MenuPopup::toggle(const QRect &anchor)
{
    if (m_open) {
        m_open->close();
        return;
    }
    auto *menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_prepare(*menu);
    fillMenu(*menu, m_menu);
    m_open = menu;
    const QScreen *screen = QGuiApplication::screenAt(anchor.center());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    menu->popup(screen == nullptr ? anchor.bottomLeft() : menuPlace(anchor, menu->sizeHint(), screen->geometry()));
}

} // namespace lumenfold
