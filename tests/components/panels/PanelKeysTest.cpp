#include "tests/components/panels/PanelDesk.h"

#include "platform/keyboard/x11/X11KeyboardRouter.h"

#include "tests/support/desktop/Input.h"
#include "tests/support/unit/LogWatch.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

constexpr std::uint32_t escapeKey = 53;
constexpr std::uint32_t letterA = 0;

class PanelKeysTest : public PanelDesk {
protected:
    std::unique_ptr<Panel> showKeyPanel(const Rect &frame, PanelKeyPolicy policy = PanelKeyPolicy::mayBecomeKey)
    {
        auto panel = showPanel(frame, Qt::red, {.keyPolicy = policy, .title = u"overlay"_s});
        panel->setKeyHandler([this](const KeyEvent &event) {
            m_keys.push_back(event.keyCode);
            return event.keyCode == escapeKey;
        });
        return panel;
    }

    std::vector<std::uint32_t> m_keys;
};

TEST_F(PanelKeysTest, aKeyPanelHasAllKeysUntilItIsOrderedOut)
{
    const auto panel = showKeyPanel({60, 60, 120, 90});
    EXPECT_EQ(m_taps.openTaps(), 0U);
    panel->makeKey();
    EXPECT_EQ(m_taps.press(escapeKey), TapDisposition::swallow);
    EXPECT_EQ(m_taps.press(letterA), TapDisposition::swallow);
    EXPECT_THAT(m_keys, ElementsAre(escapeKey, letterA));
    panel->orderOut();
    EXPECT_EQ(m_taps.openTaps(), 0U);
}

TEST_F(PanelKeysTest, theLastPanelMadeKeyHasThem)
{
    const auto first = showKeyPanel({60, 60, 120, 90});
    const auto second = showKeyPanel({260, 60, 120, 90});
    int secondKeys = 0;
    second->setKeyHandler([&](const KeyEvent &) {
        ++secondKeys;
        return true;
    });
    first->makeKey();
    second->makeKey();
    m_taps.press(escapeKey);
    EXPECT_EQ(secondKeys, 1);
    EXPECT_TRUE(m_keys.empty());
    first->orderOut();
    EXPECT_EQ(m_taps.openTaps(), 1U);
}

TEST_F(PanelKeysTest, aPanelThatMayNotBecomeKeyDoesNot)
{
    const auto panel = showKeyPanel({60, 60, 120, 90}, PanelKeyPolicy::never);
    panel->makeKey();
    EXPECT_EQ(m_taps.creationAttempts(), 0);
}

TEST_F(PanelKeysTest, aPanelThatGoesLetsTheKeysGo)
{
    auto panel = showKeyPanel({60, 60, 120, 90});
    panel->makeKey();
    panel.reset();
    EXPECT_EQ(m_taps.openTaps(), 0U);
}

TEST_F(PanelKeysTest, aPanelHasTheKeysBeforeItIsSeen)
{
    const auto panel = makePanel({60, 60, 120, 90}, {.keyPolicy = PanelKeyPolicy::mayBecomeKey});
    panel->setKeyHandler([this](const KeyEvent &event) {
        m_keys.push_back(event.keyCode);
        return true;
    });
    panel->makeKey();
    EXPECT_EQ(m_taps.press(escapeKey), TapDisposition::swallow);
    panel->orderFrontRegardless();
    EXPECT_EQ(m_taps.press(letterA), TapDisposition::swallow);
    EXPECT_THAT(m_keys, ElementsAre(escapeKey, letterA));
    EXPECT_EQ(m_taps.creationAttempts(), 1);
}

TEST_F(PanelKeysTest, aPanelThatGoesUnseenLetsTheKeysGo)
{
    auto panel = makePanel({60, 60, 120, 90}, {.keyPolicy = PanelKeyPolicy::mayBecomeKey});
    panel->makeKey();
    EXPECT_EQ(m_taps.openTaps(), 1U);
    panel.reset();
    EXPECT_EQ(m_taps.openTaps(), 0U);
}

/// With the program's own keyboard router in place of the fake.
class PanelKeysOnServerTest : public PanelKeysTest, public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    PanelKeysOnServerTest()
    {
        m_factory = std::make_unique<X11PanelFactory>(
            x11::X11Connection::open(), X11PanelFactory::Surroundings{.taps = m_router->taps(), .screens = *m_screens});
    }

    std::unique_ptr<x11::X11KeyboardRouter> m_router = x11::X11KeyboardRouter::start();
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, PanelKeysOnServerTest,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox,
                                           WindowManagerKind::xfwm4, WindowManagerKind::i3));

TEST_P(PanelKeysOnServerTest, escapeReachesTheKeyPanelWhileTheFrontWindowKeepsItsFocus)
{
    startWindowManager(GetParam());
    TestWindow window(server(), {.frame = {400, 100, 300, 200}});
    window.focus();
    const auto panel = showKeyPanel({60, 60, 120, 90});
    panel->makeKey();
    window.forgetInput();
    Keyboard keyboard(server().display());
    // The router holds the keyboard when it gets to it, which another thread does: strike by strike until then.
    EXPECT_TRUE(waitFor([&] {
        const auto before = window.keyPresses().size();
        keyboard.press("a");
        EXPECT_TRUE(waitFor([&] { return !m_keys.empty() || window.keyPresses().size() > before; }));
        return !m_keys.empty();
    }));
    const auto strayed = window.keyPresses().size();
    keyboard.press("Escape");
    keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return m_keys.size() == 3; }));
    EXPECT_THAT(m_keys, ElementsAre(letterA, escapeKey, letterA));
    EXPECT_EQ(window.keyPresses().size(), strayed);
    EXPECT_TRUE(window.hasFocus());
    EXPECT_EQ(window.focusLosses(), 0);

    panel->orderOut();
    m_keys.clear();
    EXPECT_TRUE(waitFor([&] {
        keyboard.press("Escape");
        return window.keyPresses().size() > strayed;
    }));
}

class PanelKeysWithoutTapTest : public PanelKeysTest, public ::testing::WithParamInterface<WindowManagerKind> {};

INSTANTIATE_TEST_SUITE_P(WindowManagers, PanelKeysWithoutTapTest,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox));

TEST_P(PanelKeysWithoutTapTest, theFocusIsBorrowedOnceThePanelIsSeen)
{
    startWindowManager(GetParam());
    TestWindow window(server(), {.frame = {400, 100, 300, 200}});
    window.focus();
    m_taps.setAvailable(false);
    expectLogLine(u"LumenFold panels: the keyboard cannot be watched now, the panel takes the focus instead"_s);

    const auto panel = makePanel({60, 60, 120, 90}, {.keyPolicy = PanelKeyPolicy::mayBecomeKey, .title = u"overlay"_s});
    panel->makeKey();
    EXPECT_TRUE(window.hasFocus());
    panel->orderFrontRegardless();
    EXPECT_TRUE(waitFor([&] { return connection().focusedWindow() == windowOf(u"overlay"_s); }));
    panel->orderOut();
    EXPECT_TRUE(waitFor([&] { return window.hasFocus(); }));
}

TEST_P(PanelKeysWithoutTapTest, theFocusIsBorrowedAndGivenBack)
{
    startWindowManager(GetParam());
    TestWindow window(server(), {.frame = {400, 100, 300, 200}});
    window.focus();
    m_taps.setAvailable(false);
    expectLogLine(u"LumenFold panels: the keyboard cannot be watched now, the panel takes the focus instead"_s);

    const auto panel = showKeyPanel({60, 60, 120, 90});
    panel->makeKey();
    EXPECT_TRUE(waitFor([&] { return connection().focusedWindow() == windowOf(u"overlay"_s); }));
    window.forgetInput();
    Keyboard keyboard(server().display());
    keyboard.press("a");
    keyboard.press("Escape");
    EXPECT_TRUE(waitFor([&] { return m_keys.size() == 2; }));
    EXPECT_THAT(m_keys, ElementsAre(letterA, escapeKey));
    EXPECT_TRUE(window.keyPresses().isEmpty());

    panel->orderOut();
    EXPECT_TRUE(waitFor([&] { return window.hasFocus(); }));
    keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return window.keyPresses().size() == 1; }));
    EXPECT_EQ(m_keys.size(), 2U);
}

} // namespace
} // namespace lumenfold::test
