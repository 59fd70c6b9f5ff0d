/// The status item in an XEmbed tray.
#include "tests/components/statusitem/StatusAreaFixture.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Windows.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

class TrayTest : public StatusAreaTest {
protected:
    /// The one that differs most from the tray's ground.
    [[nodiscard]] QColor writing()
    {
        const QImage picture = tray->picture();
        const QColor ground = picture.pixelColor(0, 0);
        QColor most = ground;
        const auto distance = [&ground](const QColor &color) {
            return std::abs(color.red() - ground.red()) + std::abs(color.green() - ground.green()) +
                   std::abs(color.blue() - ground.blue());
        };
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (distance(picture.pixelColor(x, y)) > distance(most)) {
                    most = picture.pixelColor(x, y);
                }
            }
        }
        return most;
    }

    [[nodiscard]] bool showsBadge()
    {
        const QImage picture = tray->picture();
        return picture.pixelColor(badgePlacement(picture.width()).circle.center()) == QColor(255, 149, 0);
    }
};

TEST_F(TrayTest, TheIconStandsOutFromALightAndADarkTray)
{
    makeTray({.ground = QColor(235, 235, 235)});
    makeItem();
    waitForIconInTray();
    EXPECT_EQ(writing(), QColor(Qt::black));
    EXPECT_EQ(tray->picture().pixelColor(0, 0), QColor(235, 235, 235));
    makeTray({.ground = QColor(40, 40, 40)});
    waitForIconInTray();
    EXPECT_EQ(writing(), QColor(Qt::white));
}

TEST_F(TrayTest, ATrayThatSaysItsColourIsBelieved)
{
    makeTray({.ground = Qt::white, .foreground = QColor(0, 90, 160)});
    makeItem();
    waitForIconInTray();
    EXPECT_EQ(writing(), QColor(0, 90, 160));
}

TEST_F(TrayTest, InATransparentTrayTheIconIsTransparent)
{
    makeTray({.ground = Qt::white, .visual = TrayOptions::Visual::transparent, .foreground = QColor(200, 30, 30)});
    makeItem();
    tray->waitForIcons(1);
    EXPECT_EQ(tray->depth(), 32);
    EXPECT_TRUE(waitFor([&] { return writing() == QColor(200, 30, 30); }));
}

TEST_F(TrayTest, TheBadgeComesAndGoes)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    EXPECT_FALSE(showsBadge());
    item->setUpdateBadgeVisible(true);
    EXPECT_TRUE(waitFor([&] { return showsBadge(); }));
    tray->resizeIcons(48);
    EXPECT_TRUE(waitFor([&] { return tray->picture().width() == 48 && showsBadge(); }));
    item->setUpdateBadgeVisible(false);
    EXPECT_TRUE(waitFor([&] { return !showsBadge(); }));
}

TEST_F(TrayTest, AClickWithEitherButtonOpensTheMenuAndAnotherOneClosesIt)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    for (const Button button : {Button::left, Button::right}) {
        pointer.click(tray->icons().first().center(), button);
        ASSERT_TRUE(waitFor([] { return openMenu() != nullptr && openMenu()->isVisible(); }));
        chooseInOpenMenu(0);
        EXPECT_TRUE(waitFor([&] { return chosen == QStringList{QStringLiteral("Capture")}; }));
        EXPECT_TRUE(waitFor([] { return openMenu() == nullptr; }));
        chosen.clear();
    }
    // Into the blue.
    pointer.click(tray->icons().first().center());
    ASSERT_TRUE(waitFor([] { return openMenu() != nullptr && openMenu()->isVisible(); }));
    pointer.click({2, guiTestServer().size().height() - 2});
    EXPECT_TRUE(waitFor([] { return openMenu() == nullptr; }));
    EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(TrayTest, TheMenuStandsBesideItsIconWithItsShortcuts)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    const QRect icon = tray->icons().first();
    pointer.click(icon.center());
    ASSERT_TRUE(waitFor([] { return openMenu() != nullptr && openMenu()->isVisible(); }));
    const double scale = openMenu()->devicePixelRatio();
    EXPECT_EQ((QPointF(openMenu()->pos()) * scale).toPoint(), icon.bottomLeft() + QPoint(0, 1));
    EXPECT_EQ(openMenu()->actions().first()->text(), QStringLiteral("Capture\tSuper+Alt+1"));
    EXPECT_FALSE(openMenu()->actions().at(2)->isEnabled());
}

TEST_F(TrayTest, TheMenuObeysTheKeyboard)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    pointer.click(tray->icons().first().center());
    ASSERT_TRUE(waitFor([] { return openMenu() != nullptr && openMenu()->isVisible(); }));
    Keyboard keyboard(guiTestServer().display());
    keyboard.press("Up");
    keyboard.press("Return");
    EXPECT_TRUE(waitFor([&] { return chosen == QStringList{QStringLiteral("Quit")}; }));
}

TEST_F(TrayTest, OtherButtonsDoNothing)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    for (const Button button : {Button::middle, Button::scrollUp, Button::scrollDown}) {
        pointer.click(tray->icons().first().center(), button);
    }
    EXPECT_TRUE(staysTrue([] { return openMenu() == nullptr; }, 200ms));
}

TEST_F(TrayTest, ATrayMayComeLateAndGoAndComeBack)
{
    makeItem();
    EXPECT_TRUE(staysTrue([] { return true; }, 100ms));
    makeTray();
    waitForIconInTray();
    for (const auto ending : {TrayOptions::Ending::destroysIcons, TrayOptions::Ending::leavesIcons}) {
        makeTray({.ending = ending});
        waitForIconInTray();
        tray.reset();
        // Nothing of it is left on the screen.
        EXPECT_TRUE(waitFor([&] {
            const QList<WindowInfo> windows = windowsOnScreen(guiTestServer().connection());
            return std::ranges::none_of(windows, [](const WindowInfo &window) { return window.frame.width() == 24; });
        }));
    }
    makeTray();
    waitForIconInTray();
    pointer.click(tray->icons().first().center());
    EXPECT_TRUE(waitFor([] { return openMenu() != nullptr; }));
}

TEST_F(TrayTest, WithoutATrayThereIsNoWindow)
{
    const qsizetype before = windowsOnScreen(guiTestServer().connection()).size();
    makeItem();
    EXPECT_TRUE(staysTrue([&] { return windowsOnScreen(guiTestServer().connection()).size() == before; }, 300ms));
    item->setUpdateBadgeVisible(true);
    item->setMenu({});
}

TEST_F(TrayTest, ATrayWindowThatSomebodyDestroysDoesNoHarm)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    xcb_destroy_window(guiTestServer().connection().get(), tray->iconWindows().first());
    guiTestServer().connection().sync();
    tray->waitForIcons(0);
    item->setUpdateBadgeVisible(true);
    makeTray();
    waitForIconInTray();
    EXPECT_TRUE(showsBadge());
}

TEST_F(TrayTest, AHoveringPointerIsToldWhatItIs)
{
    makeTray();
    makeItem();
    waitForIconInTray();
    pointer.moveTo(tray->icons().first().center());
    const auto toolTip = []() -> QWidget * {
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget *each : all) {
            if (each->windowType() == Qt::ToolTip && each->isVisible()) {
                return each;
            }
        }
        return nullptr;
    };
    ASSERT_TRUE(waitFor([&] { return toolTip() != nullptr; }));
    EXPECT_EQ(qobject_cast<QLabel *>(toolTip())->text(), QGuiApplication::applicationDisplayName());
    pointer.moveTo({2, guiTestServer().size().height() - 2});
    EXPECT_TRUE(waitFor([&] { return toolTip() == nullptr; }));
}

} // namespace
} // namespace lumenfold::test
