#include "platform/alerts/QtAlerts.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace lumenfold::test {
namespace {

Alert question(const QStringList &buttons)
{
    return {.messageText = QStringLiteral("Enable <b>Something</b>"),
            .informativeText = QStringLiteral("It is needed.\n\nIn Settings → Something, turn it on."),
            .buttons = buttons};
}

QMessageBox *shownBox()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *box = qobject_cast<QMessageBox *>(widget); box && box->isVisible()) {
            return box;
        }
    }
    return nullptr;
}

class AlertsTest : public ::testing::Test {
protected:
    /// Returns when the alert is up and has the keyboard.
    QMessageBox *show(const QStringList &buttons)
    {
        m_alerts.runModal(question(buttons)).then([this](int chosen) { m_chosen = chosen; });
        waitUntil("the alert to have the keyboard", [] { return hasKeyboard(shownBox()); });
        EXPECT_FALSE(m_chosen);
        return shownBox();
    }

    [[nodiscard]] std::optional<int> chosen()
    {
        waitUntil("an answer", [this] { return m_chosen.has_value(); });
        return std::exchange(m_chosen, std::nullopt);
    }

    const QStringList m_two{QStringLiteral("Open System Settings"), QStringLiteral("Later")};
    const QStringList m_three{QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Third")};
    QtAlerts m_alerts;
    std::optional<int> m_chosen;
    Keyboard m_keyboard{guiTestServer().display()};
};

TEST_F(AlertsTest, TheFirstButtonIsTheDefault)
{
    show(m_two);
    m_keyboard.press("Return");
    EXPECT_EQ(chosen(), 1000);
}

TEST_F(AlertsTest, EscapeMeansTheLastButton)
{
    show(m_two);
    m_keyboard.press("Escape");
    EXPECT_EQ(chosen(), 1001);
    show(m_three);
    m_keyboard.press("Escape");
    EXPECT_EQ(chosen(), 1002);
    show({QStringLiteral("OK")});
    m_keyboard.press("Escape");
    EXPECT_EQ(chosen(), 1000);
}

TEST_F(AlertsTest, ClosingTheWindowMeansTheLastButton)
{
    show(m_two)->close();
    EXPECT_EQ(chosen(), 1001);
    show(m_three)->close();
    EXPECT_EQ(chosen(), 1002);
}

TEST_F(AlertsTest, EveryButtonHasItsNumber)
{
    for (qsizetype index = 0; index < m_three.size(); ++index) {
        const QList<QAbstractButton *> buttons = show(m_three)->buttons();
        for (QAbstractButton *button : buttons) {
            if (button->text() == m_three.at(index)) {
                button->click();
            }
        }
        EXPECT_EQ(chosen(), 1000 + index);
    }
}

TEST_F(AlertsTest, TextsAreShownAsTheyAreAndReadOut)
{
    QMessageBox *box = show(m_two);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(box->text(), u"Enable <b>Something</b>");
    EXPECT_EQ(box->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(box->informativeText(), question({}).informativeText);
    const QList<QLabel *> labels = box->findChildren<QLabel *>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel *label) {
        return label->text().contains(u"Settings → Something") && label->isVisible();
    }));
    EXPECT_FALSE(box->windowTitle().isEmpty());
    // The window manager may still be placing it.
    EXPECT_TRUE(waitFor([&] { return box->screen()->availableGeometry().contains(box->frameGeometry()); }));
    m_keyboard.press("Escape");
    EXPECT_EQ(chosen(), 1001);
}

TEST_F(AlertsTest, AnAlertComesInFrontOfTheWindowThatHasTheKeyboard)
{
    TestWindow other(guiTestServer());
    other.focus();
    show(m_two);
    m_keyboard.press("Return");
    EXPECT_EQ(chosen(), 1000);
}

TEST_F(AlertsTest, TheProgramGoesOnWhileAnAlertIsUp)
{
    show(m_two);
    bool ran = false;
    QTimer::singleShot(0, [&] { ran = true; });
    EXPECT_TRUE(waitFor([&] { return ran; }));
    EXPECT_FALSE(m_chosen);
    m_keyboard.press("Return");
    EXPECT_EQ(chosen(), 1000);
}

TEST_F(AlertsTest, TheWindowGoesWithItsAnswer)
{
    const QPointer<QMessageBox> box = show(m_two);
    m_keyboard.press("Return");
    EXPECT_EQ(chosen(), 1000);
    EXPECT_TRUE(waitFor([&] { return box.isNull(); }));
}

} // namespace
} // namespace lumenfold::test
