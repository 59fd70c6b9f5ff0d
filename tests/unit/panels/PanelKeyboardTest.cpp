#include "platform/panels/PanelKeyboard.h"

#include "tests/support/fakes/FakeKeyEventTap.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t escapeKey = 53;
constexpr std::uint32_t returnKey = 36;

class PanelKeyboardTest : public ::testing::Test {
protected:
    [[nodiscard]] PanelKeyboard::Handler record(std::vector<std::uint32_t> &keys)
    {
        return [&keys](const KeyEvent &event) { keys.push_back(event.keyCode); };
    }

    test::FakeKeyEventTapService m_taps;
    PanelKeyboard m_keyboard{m_taps};
    /// Stand for two panels.
    int m_first = 0;
    int m_second = 0;
    std::vector<std::uint32_t> m_firstKeys;
    std::vector<std::uint32_t> m_secondKeys;
};

TEST_F(PanelKeyboardTest, holdsTheWholeKeyboardAndSwallowsEverything)
{
    EXPECT_EQ(m_keyboard.give(&m_first, record(m_firstKeys)), PanelKeyboard::Grip::held);
    ASSERT_EQ(m_taps.openTaps(), 1U);
    EXPECT_EQ(m_taps.taps().front()->scope, TapScope::wholeKeyboard);
    EXPECT_EQ(m_taps.press(escapeKey), TapDisposition::swallow);
    EXPECT_EQ(m_taps.send({.type = KeyEventType::keyUp, .keyCode = escapeKey}), TapDisposition::swallow);
    EXPECT_THAT(m_firstKeys, ElementsAre(escapeKey));
}

TEST_F(PanelKeyboardTest, theLastPanelToAskHasTheKeys)
{
    EXPECT_EQ(m_keyboard.give(&m_first, record(m_firstKeys)), PanelKeyboard::Grip::held);
    EXPECT_EQ(m_keyboard.give(&m_second, record(m_secondKeys)), PanelKeyboard::Grip::held);
    EXPECT_EQ(m_taps.openTaps(), 1U);
    m_taps.press(returnKey);
    EXPECT_THAT(m_firstKeys, IsEmpty());
    EXPECT_THAT(m_secondKeys, ElementsAre(returnKey));

    m_keyboard.takeFrom(&m_first);
    EXPECT_EQ(m_taps.openTaps(), 1U);
    m_keyboard.takeFrom(&m_second);
    EXPECT_EQ(m_taps.openTaps(), 0U);
}

TEST_F(PanelKeyboardTest, aDisabledTapIsEnabledAgain)
{
    EXPECT_EQ(m_keyboard.give(&m_first, record(m_firstKeys)), PanelKeyboard::Grip::held);
    m_taps.disableTaps(KeyEventType::tapDisabledByTimeout);
    EXPECT_TRUE(m_taps.taps().front()->isEnabled);
    m_taps.press(escapeKey);
    EXPECT_THAT(m_firstKeys, ElementsAre(escapeKey));
}

TEST_F(PanelKeyboardTest, aHandlerMayGiveTheKeyboardBack)
{
    const auto giveBack = [this](const KeyEvent &event) {
        m_keyboard.takeFrom(&m_first);
        m_firstKeys.push_back(event.keyCode);
    };
    EXPECT_EQ(m_keyboard.give(&m_first, giveBack), PanelKeyboard::Grip::held);
    EXPECT_EQ(m_taps.press(escapeKey), TapDisposition::swallow);
    EXPECT_THAT(m_firstKeys, ElementsAre(escapeKey));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_taps.openTaps(), 0U);
}

TEST_F(PanelKeyboardTest, aRefusedTapIsToldAndTriedAgainNextTime)
{
    m_taps.setAvailable(false);
    EXPECT_EQ(m_keyboard.give(&m_first, record(m_firstKeys)), PanelKeyboard::Grip::refused);
    m_taps.setAvailable(true);
    EXPECT_EQ(m_keyboard.give(&m_first, record(m_firstKeys)), PanelKeyboard::Grip::held);
}

} // namespace
} // namespace lumenfold
