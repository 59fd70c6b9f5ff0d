#include "platform/statusitem/MenuPopup.h"

#include "platform/keyboard/KeyEvent.h"
#include "tests/support/desktop/Wait.h"

#include <QAction>
#include <QMenu>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(MenuPopup, StandsBeneathTheIconAndAboveItAtTheLowerEdge)
{
    constexpr QRect screen(0, 0, 1000, 800);
    constexpr QSize menu(200, 300);
    EXPECT_EQ(menuPlace({500, 0, 24, 24}, menu, screen), QPoint(500, 24));
    EXPECT_EQ(menuPlace({500, 776, 24, 24}, menu, screen), QPoint(500, 476));
    EXPECT_EQ(menuPlace({990, 0, 24, 24}, menu, screen), QPoint(800, 24));
    EXPECT_EQ(menuPlace({-50, 400, 24, 24}, menu, screen), QPoint(0, 424));
    // Exactly fits.
    EXPECT_EQ(menuPlace({0, 476, 24, 24}, menu, screen), QPoint(0, 500));
    EXPECT_EQ(menuPlace({0, 477, 24, 24}, menu, screen), QPoint(0, 177));
}

TEST(MenuPopup, AMenuThatIsLargerThanTheScreenBeginsOnIt)
{
    constexpr QRect screen(1000, 0, 300, 200);
    EXPECT_EQ(menuPlace({1100, 180, 20, 20}, {400, 500}, screen), QPoint(1000, 0));
}

TEST(MenuPopup, TheToolkitsMenuHasTheItems)
{
    int clicks = 0;
    MenuItem capture;
    capture.title = QStringLiteral("R&D");
    capture.keyEquivalent = QStringLiteral("1");
    capture.keyEquivalentModifierMask = keyFlags::option | keyFlags::command;
    capture.image = QImage(28, 28, QImage::Format_ARGB32);
    capture.image.setDevicePixelRatio(2);
    capture.action = [&clicks] { ++clicks; };
    MenuItem told;
    told.title = QStringLiteral("told");
    told.isEnabled = false;
    QMenu menu;
    fillMenu(menu, {capture, MenuItem::separator(), told});

    const QList<QAction *> actions = menu.actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[0]->text(), QStringLiteral("R&&D\tSuper+Alt+1"));
    EXPECT_TRUE(actions[0]->shortcut().isEmpty());
    EXPECT_FALSE(actions[0]->icon().isNull());
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_FALSE(actions[2]->isEnabled());

    actions[0]->trigger();
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(waitFor([&] { return clicks == 1; }));
}

} // namespace
} // namespace lumenfold::test
