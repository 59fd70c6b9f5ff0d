#include "tests/components/panels/PanelDesk.h"

#include "tests/support/unit/LogWatch.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

/// What another program does that pulls its window up without asking anybody.
void raiseDirectly(const XConnection &connection, xcb_window_t window)
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    connection.sync();
}

class PanelAboveOthersTest : public PanelDesk, public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    void SetUp() override
    {
        startWindowManager(GetParam());
        m_panel = showPanel(m_frame, Qt::red, {.title = u"card"_s});
        m_window = windowOf(u"card"_s);
    }

    /// And is painted there; a window that covers it does so after some time, hence twice.
    void expectAbove(xcb_window_t other)
    {
        EXPECT_TRUE(waitFor([&] { return isAbove(m_window, other); }));
        settle();
        EXPECT_TRUE(isAbove(m_window, other));
        EXPECT_TRUE(becomes(m_frame.center(), Qt::red));
    }

    [[nodiscard]] QRect underPanel() const { return pixelsOf(m_frame.outsetBy(20)); }

    const Rect m_frame{60, 60, 120, 90};
    std::unique_ptr<Panel> m_panel;
    xcb_window_t m_window = XCB_NONE;
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, PanelAboveOthersTest,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox,
                                           WindowManagerKind::xfwm4, WindowManagerKind::i3));

TEST_P(PanelAboveOthersTest, aNewWindow)
{
    const TestWindow window(server(), {.frame = underPanel()});
    expectAbove(window.id());
}

TEST_P(PanelAboveOthersTest, aWindowThatIsRaised)
{
    TestWindow window(server(), {.frame = underPanel()});
    expectAbove(window.id());
    window.raise();
    expectAbove(window.id());
    raiseDirectly(connection(), topLevelOf(window.id()));
    expectAbove(window.id());
}

TEST_P(PanelAboveOthersTest, aFullScreenWindow)
{
    TestWindow window(server(), {.frame = QRect(QPoint(0, 0), server().size()), .fullScreen = FullScreen::yes});
    window.focus();
    EXPECT_TRUE(waitFor([&] { return window.frame() == QRect(QPoint(0, 0), server().size()); }));
    expectAbove(window.id());
}

TEST_P(PanelAboveOthersTest, aMaximisedWindow)
{
    if (GetParam() == WindowManagerKind::none) {
        GTEST_SKIP() << "nobody maximises without a window manager";
    }
    TestWindow window(server(), {.frame = underPanel(), .decoration = Decoration::ofTheWindowManager});
    constexpr quint32 add = 1;
    connection().sendToRoot(
        window.id(), "_NET_WM_STATE",
        {add, connection().atom("_NET_WM_STATE_MAXIMIZED_VERT"), connection().atom("_NET_WM_STATE_MAXIMIZED_HORZ"), 1});
    window.focus();
    expectAbove(window.id());
}

TEST_P(PanelAboveOthersTest, butNotAMenuThatCameLater)
{
    const TestWindow menu(server(), {.frame = underPanel(), .kind = WindowKind::overrideRedirect});
    // A window manager that is still starting may put a bar of its own above both; the panel then passes both.
    EXPECT_TRUE(waitFor([&] {
        raiseDirectly(connection(), menu.id());
        return staysTrue(
            [&] {
                settle();
                return isAbove(menu.id(), m_window);
            },
            std::chrono::milliseconds(200));
    }));
}

class PanelStackingTest : public PanelDesk {};

TEST_F(PanelStackingTest, theLastOrderedFrontIsOnTop)
{
    const Rect frame{60, 60, 120, 90};
    const auto first = showPanel(frame, Qt::red, {.title = u"first"_s});
    const auto second = showPanel(frame, Qt::blue, {.title = u"second"_s});
    EXPECT_TRUE(isAbove(windowOf(u"second"_s), windowOf(u"first"_s)));
    first->orderFrontRegardless();
    settle();
    EXPECT_TRUE(isAbove(windowOf(u"first"_s), windowOf(u"second"_s)));
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
}

TEST_F(PanelStackingTest, screenSaverLevelStaysAboveFloating)
{
    const Rect frame{60, 60, 120, 90};
    const auto overlay = showPanel(frame, Qt::blue, {.level = PanelLevel::screenSaver, .title = u"overlay"_s});
    const auto card = makePanel(frame, {.title = u"card"_s});
    card->setContentView(std::make_unique<ColouredView>(Qt::red));
    card->orderFrontRegardless();
    settle();
    EXPECT_TRUE(isAbove(windowOf(u"overlay"_s), windowOf(u"card"_s)));
    card->orderOut();
    card->orderFrontRegardless();
    settle();
    EXPECT_TRUE(isAbove(windowOf(u"overlay"_s), windowOf(u"card"_s)));
    EXPECT_TRUE(becomes(frame.center(), Qt::blue));
}

TEST_F(PanelStackingTest, reorderingManyDisturbsOnlyThoseThatMove)
{
    std::vector<std::unique_ptr<Panel>> cards;
    for (int index = 0; index < 5; ++index) {
        cards.push_back(showPanel({60, 60.0 + 10 * index, 120, 90}, Qt::red, {.title = u"card %1"_s.arg(index)}));
    }
    // As a layout does: each to the front, one after the other, in an order that differs in one card.
    for (const int index : {0, 2, 3, 4, 1}) {
        cards[static_cast<std::size_t>(index)]->orderFrontRegardless();
    }
    settle();
    EXPECT_TRUE(isAbove(windowOf(u"card 1"_s), windowOf(u"card 4"_s)));
    EXPECT_TRUE(isAbove(windowOf(u"card 4"_s), windowOf(u"card 3"_s)));
    EXPECT_TRUE(isAbove(windowOf(u"card 3"_s), windowOf(u"card 2"_s)));
    EXPECT_TRUE(isAbove(windowOf(u"card 2"_s), windowOf(u"card 0"_s)));
}

TEST_F(PanelStackingTest, aProgramThatAlwaysComesBackIsLetWin)
{
    const auto card = showPanel({60, 60, 120, 90}, Qt::red, {.title = u"card"_s});
    const xcb_window_t cardWindow = windowOf(u"card"_s);
    const TestWindow window(server(), {.frame = pixelsOf({40, 40, 160, 130})});
    const QString givingUp = u"LumenFold panels: window 0x%1 is raised again and again, it stays in front"_s.arg(
        static_cast<quint32>(window.id()), 0, 16);
    expectLogLine(givingUp);
    const auto insist = [&] {
        settle();
        if (isAbove(cardWindow, window.id())) {
            raiseDirectly(connection(), window.id());
        }
    };
    EXPECT_TRUE(waitFor([&] {
        insist();
        return logLines().contains(givingUp);
    }));
    insist();
    EXPECT_TRUE(staysTrue(
        [&] {
            settle();
            return isAbove(window.id(), cardWindow);
        },
        std::chrono::milliseconds(100)));

    // What the user does with a card gives it another chance.
    card->orderFrontRegardless();
    settle();
    EXPECT_TRUE(waitFor([&] {
        card->orderOut();
        card->orderFrontRegardless();
        settle();
        return isAbove(cardWindow, window.id());
    }));
}

} // namespace
} // namespace lumenfold::test
