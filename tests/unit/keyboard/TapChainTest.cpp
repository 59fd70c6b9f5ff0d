#include "platform/keyboard/x11/TapChain.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenfold::test {
namespace {

using x11::ChainedTap;
using x11::PressKind;
using x11::TapChain;

const KeyEvent press{.keyCode = 18};

class TapChainTest : public ::testing::Test {
protected:
    std::shared_ptr<ChainedTap> add(const std::string &name, TapScope scope, TapDisposition disposition)
    {
        auto tap = m_chain.add(scope, [this, name, disposition](const KeyEvent &) {
            m_asked.push_back(name);
            return disposition;
        });
        tap->isEnabled = true;
        return tap;
    }

    int m_answers = 0;
    TapChain m_chain{[this] { ++m_answers; }};
    std::vector<std::string> m_asked;
};

using Names = std::vector<std::string>;

TEST_F(TapChainTest, AsksNewestFirstUntilOneSwallows)
{
    const auto first = add("first", TapScope::hotKeys, TapDisposition::passOn);
    const auto second = add("second", TapScope::hotKeys, TapDisposition::swallow);
    const auto third = add("third", TapScope::wholeKeyboard, TapDisposition::passOn);
    m_chain.answer(m_chain.open(PressKind::ofHotKey), press, PressKind::ofHotKey);
    EXPECT_EQ(m_asked, (Names{"third", "second"}));
    EXPECT_EQ(m_answers, 1);
    EXPECT_EQ(m_chain.takeAnswer(), TapDisposition::swallow);
    EXPECT_EQ(m_chain.takeAnswer(), std::nullopt);
}

TEST_F(TapChainTest, PassesOnWhenNobodySwallows)
{
    const auto tap = add("tap", TapScope::hotKeys, TapDisposition::passOn);
    m_chain.answer(m_chain.open(PressKind::ofHotKey), press, PressKind::ofHotKey);
    EXPECT_EQ(m_chain.takeAnswer(), TapDisposition::passOn);
}

TEST_F(TapChainTest, AsksOnlyThoseWhoSeeSuchAPress)
{
    const auto narrow = add("narrow", TapScope::hotKeys, TapDisposition::swallow);
    EXPECT_TRUE(m_chain.wants(PressKind::ofHotKey));
    EXPECT_FALSE(m_chain.wants(PressKind::ofOtherKey));
    EXPECT_FALSE(m_chain.wantsWholeKeyboard());

    const auto wide = add("wide", TapScope::wholeKeyboard, TapDisposition::passOn);
    EXPECT_TRUE(m_chain.wantsWholeKeyboard());
    m_chain.answer(m_chain.open(PressKind::ofOtherKey), press, PressKind::ofOtherKey);
    EXPECT_EQ(m_asked, Names{"wide"});

    m_chain.remove(wide);
    EXPECT_FALSE(m_chain.wantsWholeKeyboard());
}

TEST_F(TapChainTest, DoesNotAskADisabledTap)
{
    const auto tap = add("tap", TapScope::wholeKeyboard, TapDisposition::swallow);
    tap->isEnabled = false;
    EXPECT_FALSE(m_chain.wants(PressKind::ofHotKey));
    m_chain.answer(m_chain.open(PressKind::ofHotKey), press, PressKind::ofHotKey);
    EXPECT_TRUE(m_asked.empty());
    EXPECT_EQ(m_chain.takeAnswer(), TapDisposition::passOn);
}

TEST_F(TapChainTest, DoesNotAskATapThatAnEarlierOneClosed)
{
    const auto older = add("older", TapScope::hotKeys, TapDisposition::swallow);
    const auto newer = m_chain.add(TapScope::hotKeys, [&](const KeyEvent &) {
        m_chain.remove(older);
        return TapDisposition::passOn;
    });
    newer->isEnabled = true;
    m_chain.answer(m_chain.open(PressKind::ofHotKey), press, PressKind::ofHotKey);
    EXPECT_TRUE(m_asked.empty());
    EXPECT_EQ(m_chain.takeAnswer(), TapDisposition::passOn);
}

TEST_F(TapChainTest, AQuestionThatWasGivenUpIsNotAnswered)
{
    const auto tap = add("tap", TapScope::hotKeys, TapDisposition::swallow);
    const std::uint64_t question = m_chain.open(PressKind::ofHotKey);
    EXPECT_EQ(m_chain.giveUp(), tap) << "the one whose turn it was";
    EXPECT_FALSE(tap->isEnabled);
    tap->isEnabled = true;
    m_chain.answer(question, press, PressKind::ofHotKey);
    EXPECT_TRUE(m_asked.empty());
    EXPECT_EQ(m_answers, 0);
    EXPECT_EQ(m_chain.takeAnswer(), std::nullopt);
}

TEST_F(TapChainTest, TheTapThatIsRunningIsTheOneToBlame)
{
    std::shared_ptr<ChainedTap> blamed;
    const auto oldest = add("oldest", TapScope::hotKeys, TapDisposition::swallow);
    const auto slow = m_chain.add(TapScope::hotKeys, [&](const KeyEvent &) {
        // Just as well from another thread.
        blamed = m_chain.giveUp();
        return TapDisposition::passOn;
    });
    slow->isEnabled = true;
    const auto newest = add("newest", TapScope::hotKeys, TapDisposition::passOn);
    m_chain.answer(m_chain.open(PressKind::ofHotKey), press, PressKind::ofHotKey);
    EXPECT_EQ(blamed, slow);
    EXPECT_FALSE(slow->isEnabled);
    EXPECT_TRUE(newest->isEnabled && oldest->isEnabled);
    EXPECT_EQ(m_asked, Names{"newest"}) << "nobody is asked after that";
    EXPECT_EQ(m_chain.takeAnswer(), std::nullopt);
}

TEST_F(TapChainTest, NobodyIsToBlameWhenAllTapsHaveGone)
{
    const auto tap = add("tap", TapScope::hotKeys, TapDisposition::swallow);
    [[maybe_unused]] const std::uint64_t question = m_chain.open(PressKind::ofHotKey);
    m_chain.remove(tap);
    EXPECT_EQ(m_chain.giveUp(), nullptr);
}

TEST_F(TapChainTest, AnAnswerToAnOldQuestionDoesNotCount)
{
    const auto tap = add("tap", TapScope::hotKeys, TapDisposition::swallow);
    const std::uint64_t old = m_chain.open(PressKind::ofHotKey);
    [[maybe_unused]] const auto blamed = m_chain.giveUp();
    tap->isEnabled = true;
    const std::uint64_t present = m_chain.open(PressKind::ofHotKey);
    m_chain.answer(old, press, PressKind::ofHotKey);
    EXPECT_EQ(m_chain.takeAnswer(), std::nullopt);
    m_chain.answer(present, press, PressKind::ofHotKey);
    EXPECT_EQ(m_chain.takeAnswer(), TapDisposition::swallow);
}

} // namespace
} // namespace lumenfold::test
