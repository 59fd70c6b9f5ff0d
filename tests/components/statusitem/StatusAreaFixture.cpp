#include "tests/components/statusitem/StatusAreaFixture.h"

#include "app/menubar/MenuBarImages.h"
#include "platform/keyboard/KeyEvent.h"
#include "tests/support/desktop/GuiTest.h"

#include <QApplication>
#include <QMenu>

namespace lumenfold::test {

StatusAreaTest::StatusAreaTest() : pointer(guiTestServer().display())
{
    pointer.moveTo({2, guiTestServer().size().height() - 2});
}

StatusAreaTest::~StatusAreaTest()
{
    if (QMenu *menu = openMenu()) {
        menu->close();
    }
}

void StatusAreaTest::makeItem()
{
    item = std::make_unique<DesktopStatusItem>(
        StatusItemSurroundings{.appearance = appearance, .iconFolder = folder.path()}, *connection,
        [](const QRect &rootPixels) {
            const double scale = qApp->devicePixelRatio();
            return QRect((QPointF(rootPixels.topLeft()) / scale).toPoint(),
                         (QSizeF(rootPixels.size()) / scale).toSize());
        });
    item->setImage(menuBarImage());
    item->setMenu(threeItems());
}

void StatusAreaTest::makeHost(StatusNotifierHost::Panel panel, StatusNotifierHost::Manners manners)
{
    host.reset();
    host = std::make_unique<StatusNotifierHost>(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), panel, manners);
}

void StatusAreaTest::makeTray(const TrayOptions &options)
{
    tray.reset();
    tray = std::make_unique<TrayManager>(guiTestServer(), options);
}

MenuItem StatusAreaTest::command(const QString &title)
{
    MenuItem result;
    result.title = title;
    result.action = [this, title] { chosen.append(title); };
    return result;
}

Menu StatusAreaTest::threeItems()
{
    MenuItem capture = command(QStringLiteral("Capture"));
    capture.keyEquivalent = QStringLiteral("1");
    capture.keyEquivalentModifierMask = keyFlags::option | keyFlags::command;
    MenuItem told = command(QStringLiteral("Connected · a_b@example.org"));
    told.isEnabled = false;
    return {capture, MenuItem::separator(), told, command(QStringLiteral("Quit"))};
}

QMenu *StatusAreaTest::openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void StatusAreaTest::chooseInOpenMenu(int index)
{
    QMenu *menu = openMenu();
    const QPoint place = menu->mapToGlobal(menu->actionGeometry(menu->actions().at(index)).center());
    pointer.click((QPointF(place) * menu->devicePixelRatio()).toPoint());
}

void StatusAreaTest::waitForIconInTray()
{
    tray->waitForIcons(1);
    // Painted, that is, not only the tray's ground.
    waitUntil("the icon to be painted", [this] {
        const QImage picture = tray->picture();
        const QRgb corner = picture.pixel(0, 0);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != corner) {
                    return true;
                }
            }
        }
        return false;
    });
}

bool StatusAreaTest::trayStaysEmpty()
{
    return staysTrue([this] { return tray->icons().isEmpty(); }, std::chrono::milliseconds(300));
}

} // namespace lumenfold::test
