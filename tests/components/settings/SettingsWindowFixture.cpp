#include "tests/components/settings/SettingsWindowFixture.h"

#include "settings/GeneralSettingsView.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Wait.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

namespace lumenfold::test {

SettingsWindowTest::SettingsWindowTest() : keyboard(guiTestServer().display()), pointer(guiTestServer().display())
{
    pointer.moveTo({0, 0});
}

SettingsWindowTest::~SettingsWindowTest() = default;

void SettingsWindowTest::present()
{
    desk->controller->present();
    waitUntil("the window to have the keyboard", [] { return hasKeyboard(SettingsDesk::window()); });
}

void SettingsWindowTest::present(const QString &tab)
{
    present();
    SettingsDesk::showTab(tab);
}

void SettingsWindowTest::click(QWidget *widget)
{
    ASSERT_NE(widget, nullptr);
    auto *page = SettingsDesk::window()->findChild<GeneralSettingsView *>();
    if (page->isAncestorOf(widget)) {
        page->ensureWidgetVisible(widget);
    }
    QPoint place = widget->rect().center();
    if (const auto *button = qobject_cast<QAbstractButton *>(widget); button != nullptr && button->isCheckable()) {
        // What can be clicked is at their beginning, however wide they are.
        constexpr int insideTheMark = 8;
        place.setX(insideTheMark);
    }
    pointer.click(widget->mapToGlobal(place) * widget->devicePixelRatio());
}

bool SettingsWindowTest::hasFocus(const QWidget *widget)
{
    return widget != nullptr && waitFor([widget] { return QApplication::focusWidget() == widget; });
}

} // namespace lumenfold::test
