#include "platform/keyboard/ToolkitKeyEvent.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

/// `scanCode` is the keycode of an evdev keyboard.
std::optional<KeyEvent> event(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode)
{
    return keyEventOf(QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0, 0));
}

TEST(ToolkitKeyEventTest, AKeyIsNamedByItsPlaceAndByWhatItTypes)
{
    // Q of a French keyboard stands where others have A.
    const auto q = event(Qt::Key_Q, Qt::ControlModifier | Qt::MetaModifier, 38);
    ASSERT_TRUE(q);
    EXPECT_EQ(q->type, KeyEventType::keyDown);
    EXPECT_EQ(q->keyCode, 0U);
    EXPECT_EQ(q->flags, keyFlags::control | keyFlags::command);
    EXPECT_EQ(q->charactersIgnoringModifiers, QStringLiteral("Q"));
    EXPECT_FALSE(q->isAutorepeat);
}

TEST(ToolkitKeyEventTest, KeysThatTypeNothingHaveWhatStandsOnThem)
{
    EXPECT_EQ(event(Qt::Key_F5, Qt::AltModifier, 71)->charactersIgnoringModifiers, QStringLiteral("F5"));
    EXPECT_EQ(event(Qt::Key_Escape, Qt::NoModifier, 9)->keyCode, 53U);
    EXPECT_EQ(event(Qt::Key_Backtab, Qt::ShiftModifier, 23)->keyCode, 48U);
    EXPECT_EQ(event(Qt::Key_Menu, Qt::NoModifier, 135)->keyCode, 110U);
    const auto five = event(Qt::Key_5, Qt::KeypadModifier, 84);
    EXPECT_EQ(five->keyCode, 87U);
    EXPECT_EQ(five->charactersIgnoringModifiers, QStringLiteral("5"));
}

TEST(ToolkitKeyEventTest, ModifiersAndKeysOfNoCombinationAreNothing)
{
    EXPECT_FALSE(event(Qt::Key_Shift, Qt::ShiftModifier, 50).has_value());
    EXPECT_FALSE(event(Qt::Key_AltGr, Qt::NoModifier, 108).has_value());
    for (const quint32 scanCode : {0U, 8U, 92U, 136U, 255U, 4'000'000'000U}) {
        EXPECT_FALSE(event(Qt::Key_A, Qt::ControlModifier, scanCode).has_value()) << scanCode;
    }
}

} // namespace
} // namespace lumenfold::test
