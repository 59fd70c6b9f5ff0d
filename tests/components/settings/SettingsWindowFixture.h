#pragma once

#include "tests/support/desktop/Input.h"
#include "tests/support/settings/SettingsDesk.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// A settings window that is used by hand.
class SettingsWindowTest : public ::testing::Test {
protected:
    SettingsWindowTest();
    ~SettingsWindowTest() override;

    /// Returns when the window has the keyboard.
    void present();
    /// The same, with that tab.
    void present(const QString &tab);

    /// Scrolls the widget into sight and clicks it.
    void click(QWidget *widget);
    /// True when the keyboard goes to it, now or soon.
    [[nodiscard]] static bool hasFocus(const QWidget *widget);

    std::unique_ptr<SettingsDesk> desk = std::make_unique<SettingsDesk>();
    Keyboard keyboard;
    Pointer pointer;
};

} // namespace lumenfold::test
