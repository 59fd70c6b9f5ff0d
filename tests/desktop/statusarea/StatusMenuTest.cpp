/// The status item and its menu, as the desktop around the program sees and uses them.
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/StatusNotifierHost.h"
#include "tests/support/desktop/TrayManager.h"

#include <QDir>

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

class StatusMenu : public DesktopTest {
protected:
    std::unique_ptr<StatusNotifierHost> makeHost(const Desktop &desktop)
    {
        return std::make_unique<StatusNotifierHost>(
            desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    }

    /// The lines of the menu that do not depend on how the program was built.
    [[nodiscard]] static QStringList withoutUpdates(QStringList lines)
    {
        const qsizetype check = lines.indexOf(QStringLiteral("Check for Updates…"));
        if (check >= 0) {
            lines.remove(check, 2);
        }
        return lines;
    }

    static void waitForMenu(StatusNotifierHost &host, const QString &line)
    {
        waitUntil("the menu to have " + line.toStdString(), [&] { return host.menuLines().contains(line); });
    }
};

TEST_F(StatusMenu, IsReadItemByItem)
{
    Desktop &desktop = prepare();
    const auto host = makeHost(desktop);
    desktop.startProgram();
    // The keyring has a key of somebody whose address is not known.
    waitForMenu(*host, QStringLiteral("[ ] Connected to LumenFold"));
    EXPECT_EQ(
        withoutUpdates(host->menuLines()),
        QStringList({QStringLiteral("Capture Full Screen (Super+Alt+1)"), QStringLiteral("Capture Area (Super+Alt+2)"),
                     QStringLiteral("Capture Last Area (Super+Alt+3)"), QStringLiteral("-"),
                     QStringLiteral("[ ] Connected to LumenFold"), QStringLiteral("Disconnect"), QStringLiteral("-"),
                     QStringLiteral("Settings… (Super+,)"), QStringLiteral("-"), QStringLiteral("Quit (Super+Q)")}));
    EXPECT_EQ(host->itemProperty(QStringLiteral("Title")).toString(), QStringLiteral("LumenFold"));
    EXPECT_EQ(host->itemProperty(QStringLiteral("Id")).toString(), QStringLiteral("LumenFold"));
}

TEST_F(StatusMenu, ShowsWhoIsConnectedAndTheChosenShortcuts)
{
    Desktop &desktop = prepare();
    writeSettings(desktop, "[General]\nLumenFold.userEmail=ada_l@example.org\n");
    const auto host = makeHost(desktop);
    desktop.startProgram();
    waitForMenu(*host, QStringLiteral("[ ] Connected · ada__l@example.org"));

    host->choose(QStringLiteral("Disconnect"));
    waitForMenu(*host, QStringLiteral("Connect with API Key…"));
    EXPECT_FALSE(host->menuLines().contains(QStringLiteral("Disconnect")));
    EXPECT_TRUE(waitFor([&] { return desktop.keyring().items().isEmpty(); }));

    host->choose(QStringLiteral("Connect with API Key…"));
    EXPECT_TRUE(waitFor([&] {
        const QList<WindowInfo> windows = desktop.windowsOfProgram();
        return std::ranges::any_of(windows,
                                   [](const WindowInfo &window) { return window.title == u"Connect to LumenFold"; });
    }));
}

TEST_F(StatusMenu, Captures)
{
    Desktop &desktop = prepare();
    const QImage background = desktop.paintBackground(knownPicture(desktop.server().size()));
    const auto host = makeHost(desktop);
    desktop.startProgram();
    host->choose(QStringLiteral("Capture Full Screen"));
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), background));
    desktop.waitForPanels(1);

    host->choose(QStringLiteral("Capture Area"));
    desktop.waitForOverlays({QRect(QPoint(0, 0), desktop.server().size())});
    desktop.pointer().drag({300, 100}, {500, 250});
    desktop.waitForClipboard();
    EXPECT_TRUE(waitFor([&] { return desktop.clipboardPicture().size() == QSize(200, 150); }));
    desktop.waitForPanels(2);

    host->choose(QStringLiteral("Capture Last Area"));
    desktop.waitForClipboard();
    EXPECT_TRUE(waitFor([&] { return desktop.clipboardPicture().size() == QSize(200, 150); }));
    desktop.waitForPanels(3);
}

TEST_F(StatusMenu, QuitsInOrder)
{
    Desktop &desktop = prepare();
    const auto host = makeHost(desktop);
    desktop.startProgram();
    host->choose(QStringLiteral("Quit"));
    EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
    EXPECT_TRUE(waitFor([&] { return host->items().isEmpty(); }));
}

TEST_F(StatusMenu, ComesWithADesktopThatComesLate)
{
    Desktop &desktop = start();
    auto host = makeHost(desktop);
    host->waitForItem();
    // The panel crashes and starts anew.
    host.reset();
    host = makeHost(desktop);
    host->waitForItem();
    host->choose(QStringLiteral("Capture Full Screen"));
    desktop.waitForClipboard();
}

TEST_F(StatusMenu, InAnXEmbedTrayOpensUnderBothButtons)
{
    Desktop &desktop = start({.compositor = CompositorKind::plain});
    desktop.paintBackground(knownPicture(desktop.server().size()));
    // It comes later than the program.
    TrayManager tray(desktop.server());
    tray.waitForIcons(1);
    const QImage before = desktop.waitForStillPicture();
    int captures = 0;
    for (const Button button : {Button::left, Button::right}) {
        desktop.pointer().click(tray.icons().first().center(), button);
        waitUntil("the menu", [&] { return desktop.panels().size() == captures + 1; });
        const QRect menu = desktop.panels().last().frame;
        EXPECT_EQ(menu.topLeft(), tray.icons().first().bottomLeft() + QPoint(0, 1));
        desktop.waitForStillPicture();
        // Its first entry.
        desktop.pointer().click(menu.topLeft() + QPoint(40, 14));
        desktop.waitForClipboard();
        desktop.waitForPanels(++captures);
        EXPECT_EQ(desktop.clipboardPicture().size(), desktop.server().size());
    }
    // Neither the menu nor the cards are in the picture.
    const QImage captured = desktop.clipboardPicture();
    const QRect whereTheMenuWas(tray.icons().first().bottomLeft() + QPoint(0, 2), QSize(200, 200));
    EXPECT_TRUE(samePicture(captured.copy(whereTheMenuWas), before.copy(whereTheMenuWas)));
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

TEST_F(StatusMenu, IsMissedByNobodyWhereThereIsNoTray)
{
    Desktop &desktop = start();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.waitForPanels(1);
    EXPECT_EQ(desktop.windowsOfProgram().size(), 1);
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    EXPECT_FALSE(desktop.programLog().contains("QSystemTrayIcon"));
}

TEST_F(StatusMenu, AWatcherThatHangsHoldsNothingUp)
{
    Desktop &desktop = prepare();
    const StatusNotifierHost silent(desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")),
                                    StatusNotifierHost::Panel::there, StatusNotifierHost::Manners::silent);
    TrayManager tray(desktop.server());
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    tray.waitForIcons(1);
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

} // namespace
} // namespace lumenfold::test
