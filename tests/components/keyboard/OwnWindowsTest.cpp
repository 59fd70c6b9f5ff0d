#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/keyboard/x11/X11KeyboardRouter.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>

#include <gtest/gtest.h>

#include <chrono>

namespace lumenfold::test {
namespace {

/// Notes when the keyboard leaves it.
class Field : public QLineEdit {
public:
    int focusLosses = 0;

protected:
    void focusOutEvent(QFocusEvent *event) override
    {
        ++focusLosses;
        QLineEdit::focusOutEvent(event);
    }
};

/// The front window is one of the program's own.
class OwnWindows : public ::testing::Test {
protected:
    OwnWindows()
    {
        m_field.show();
        m_field.activateWindow();
        m_field.setFocus();
        EXPECT_TRUE(waitFor([this] { return hasKeyboard(&m_field) && m_field.hasFocus(); }));
    }

    [[nodiscard]] bool keptTheKeyboard() const { return m_field.focusLosses == 0 && m_field.isActiveWindow(); }

    Keyboard m_keyboard{guiTestServer().display()};
    Field m_field;
    std::unique_ptr<x11::X11KeyboardRouter> m_router = x11::X11KeyboardRouter::start(guiTestServer().display());
};

TEST_F(OwnWindows, AHotkeyDoesNotTakeTheFocus)
{
    int presses = 0;
    m_router->hotKeys().installPressHandler([&presses](HotKeyID) {
        ++presses;
        return noHotKeyError;
    });
    const auto hotKey = m_router->hotKeys().registerHotKey(18, carbon::optionKey | carbon::cmdKey, {});
    ASSERT_EQ(hotKey.status, noHotKeyError);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return presses == 1; }));
    m_keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return m_field.text() == QStringLiteral("a"); }));
    EXPECT_TRUE(keptTheKeyboard()) << m_field.focusLosses;
}

TEST_F(OwnWindows, ATapOnTheWholeKeyboardDoesNotTakeTheFocus)
{
    int seen = 0;
    auto tap = m_router->taps().createTap(TapScope::wholeKeyboard, [&seen](const KeyEvent &) {
        ++seen;
        return TapDisposition::swallow;
    });
    tap->enable();
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("Super+Alt+1");
        return seen > 0;
    }));
    EXPECT_TRUE(staysTrue([this] { return keptTheKeyboard(); }, std::chrono::milliseconds(300)));
    tap.reset();
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("b");
        return m_field.text().contains(QLatin1Char('b'));
    }));
    EXPECT_TRUE(keptTheKeyboard()) << m_field.focusLosses;
}

TEST_F(OwnWindows, AHeldHotkeyDoesNotTakeTheFocus)
{
    const auto hotKey = m_router->hotKeys().registerHotKey(18, carbon::optionKey | carbon::cmdKey, {});
    ASSERT_EQ(hotKey.status, noHotKeyError);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    // Longer than the toolkit waits before it believes that the focus has gone.
    EXPECT_TRUE(staysTrue([this] { return keptTheKeyboard(); }, std::chrono::milliseconds(600)));
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
}

TEST_F(OwnWindows, AFocusThatReallyChangesIsNoticed)
{
    int seen = 0;
    const auto tap = m_router->taps().createTap(TapScope::wholeKeyboard, [&seen](const KeyEvent &) {
        ++seen;
        return TapDisposition::swallow;
    });
    tap->enable();
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("a");
        return seen > 0;
    }));
    TestWindow other(guiTestServer());
    other.focus();
    EXPECT_TRUE(waitFor([this] { return !m_field.isActiveWindow(); })) << "also while the keyboard is grabbed";
    m_field.activateWindow();
    EXPECT_TRUE(waitFor([this] { return m_field.isActiveWindow(); }));
}

} // namespace
} // namespace lumenfold::test

int main(int argc, char **argv)
{
    return lumenfold::test::runGuiTests(argc, argv, {.windowManager = lumenfold::test::WindowManagerKind::openbox});
}
