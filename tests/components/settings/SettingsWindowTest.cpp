#include "tests/components/settings/SettingsWindowFixture.h"

#include "settings/SettingsTabBar.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

namespace lumenfold::test {
namespace {

[[nodiscard]] const SettingsTabBar &tabs()
{
    return *SettingsDesk::window()->findChild<SettingsTabBar *>();
}

[[nodiscard]] bool isShown(const QString &tab)
{
    return waitFor([&] { return tabs().tabText(tabs().currentIndex()) == tab; });
}

TEST_F(SettingsWindowTest, ThereIsNoWidgetBeforeTheFirstTime)
{
    EXPECT_TRUE(QApplication::allWidgets().isEmpty());
    EXPECT_EQ(desk->defaults.writes(), QStringList());
    present();
    EXPECT_NE(SettingsDesk::window(), nullptr);
    EXPECT_EQ(desk->defaults.writes(), QStringList()) << "looking changes nothing";
}

TEST_F(SettingsWindowTest, IsAFixedWindowInTheMiddleOfTheScreen)
{
    present();
    const QDialog *window = SettingsDesk::window();
    EXPECT_EQ(window->windowTitle(), u"LumenFold Settings");
    EXPECT_EQ(window->size(), QSize(520, 460));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    const QPoint off = window->frameGeometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 40);
    EXPECT_EQ(desk->workspace.activations, 1);
}

TEST_F(SettingsWindowTest, ItIsOneWindowThatClosingOnlyHides)
{
    present();
    const QDialog *window = SettingsDesk::window();
    present();
    EXPECT_EQ(desk->workspace.activations, 2);
    for (const char *keys : {"Escape", "Ctrl+w"}) {
        keyboard.press(keys);
        ASSERT_TRUE(waitFor([window] { return !window->isVisible(); })) << keys;
        present();
        EXPECT_EQ(SettingsDesk::window(), window);
        EXPECT_TRUE(window->isVisible());
    }
}

TEST_F(SettingsWindowTest, ThreeTabsInTheirOrder)
{
    present();
    ASSERT_EQ(tabs().count(), 3);
    EXPECT_EQ(tabs().tabText(0), u"General");
    EXPECT_EQ(tabs().tabText(1), u"Template");
    EXPECT_EQ(tabs().tabText(2), u"Account");
    EXPECT_TRUE(isShown(QStringLiteral("General")));
}

TEST_F(SettingsWindowTest, TabsAreTurnedByPointerAndKeys)
{
    present();
    pointer.click(tabs().mapToGlobal(tabs().tabRect(2).center()) * tabs().devicePixelRatio());
    EXPECT_TRUE(isShown(QStringLiteral("Account")));
    keyboard.press("Ctrl+Tab");
    EXPECT_TRUE(isShown(QStringLiteral("General")));
    keyboard.press("Ctrl+Shift+Tab");
    EXPECT_TRUE(isShown(QStringLiteral("Account")));
    keyboard.press("Ctrl+Page_Up");
    EXPECT_TRUE(isShown(QStringLiteral("Template")));
    EXPECT_NE(SettingsDesk::part<QLabel>(QStringLiteral("Default template")), nullptr);
    keyboard.press("Ctrl+Page_Down");
    EXPECT_TRUE(isShown(QStringLiteral("Account")));
    keyboard.press("Ctrl+Page_Down");
    EXPECT_TRUE(isShown(QStringLiteral("General")));
}

TEST_F(SettingsWindowTest, TheTemplatesAreFetchedWhenTheirTabIsShown)
{
    desk->signIn(QStringLiteral("ada@example.org"));
    present();
    EXPECT_EQ(desk->service.fetches, 0);
    SettingsDesk::showTab(QStringLiteral("Template"));
    EXPECT_EQ(desk->service.fetches, 1);
}

TEST_F(SettingsWindowTest, WhatChangedWhileItWasClosedIsShown)
{
    present();
    auto *hide = SettingsDesk::part<QCheckBox>(QStringLiteral("Hide the card after Copy or Save"));
    auto *login = SettingsDesk::part<QCheckBox>(QStringLiteral("Start LumenFold at login"));
    ASSERT_TRUE(hide != nullptr && login != nullptr);
    EXPECT_FALSE(hide->isChecked() || login->isChecked());
    SettingsDesk::window()->close();
    desk->config.setHideCardOnCopyOrSave(true);
    desk->autostart.enabled = true;
    present();
    EXPECT_TRUE(hide->isChecked());
    EXPECT_TRUE(login->isChecked());
}

TEST_F(SettingsWindowTest, FollowsTheDesktopIntoTheDark)
{
    present();
    const auto corner = [] { return SettingsDesk::window()->grab().toImage().pixelColor(2, 2).lightness(); };
    const auto *caption = SettingsDesk::part<QLabel>(
        QStringLiteral("Click a shortcut, then press a new key combination (must include ⌘, ⌥, ⌃, or ⇧)."));
    ASSERT_NE(caption, nullptr);
    const auto text = [caption] { return caption->palette().color(QPalette::WindowText).lightness(); };
    EXPECT_GT(corner(), 200);
    EXPECT_LT(text(), 100);
    desk->appearance.setColorScheme(ColorScheme::dark);
    EXPECT_LT(corner(), 60);
    EXPECT_GT(text(), 150);
    desk->appearance.setColorScheme(ColorScheme::light);
    EXPECT_GT(corner(), 200);
    EXPECT_LT(text(), 100);
}

TEST_F(SettingsWindowTest, GoesAwayWithTheProgramWhileItIsOpen)
{
    present(QStringLiteral("Template"));
    desk->controller.reset();
    EXPECT_TRUE(QApplication::allWidgets().isEmpty());
}

} // namespace
} // namespace lumenfold::test
