/// What a wheel and a pointer do to the column of cards, and how to take it back.
#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class ColumnGestures : public DesktopSettingTest {
protected:
    /// A desktop with that many cards, and a window that has the keyboard.
    Desktop &startWithCards(int count)
    {
        Desktop &desktop = start(GetParam().options());
        desktop.paintBackground(knownPicture(cardFriendlyScreen * GetParam().scale));
        m_column = {.workArea = desktop.workArea(), .scale = GetParam().scale};
        m_window = &desktop.openWindow({.frame = {pixels(700), pixels(200), pixels(300), pixels(200)}});
        m_window->focus();
        moveAway();
        for (int number = 1; number <= count; ++number) {
            desktop.press("Super+Alt+1");
            desktop.waitForClipboard();
            desktop.waitForPanels(number);
        }
        return desktop;
    }

    void moveAway() { m_desktop->pointer().moveTo({pixels(900), pixels(600)}); }

    void scrollAt(QPoint place, Button direction, int notches)
    {
        m_desktop->pointer().moveTo(place);
        m_desktop->pointer().scroll(direction, notches);
    }

    /// The frames of the cards' windows; a pill is never as large.
    [[nodiscard]] QList<QRect> cardFrames() const
    {
        QList<QRect> frames;
        for (const WindowInfo &panel : m_desktop->panels()) {
            if (panel.frame.height() > pixels(60)) {
                frames.append(panel.frame);
            }
        }
        return frames;
    }
    [[nodiscard]] bool waitForCards(const QList<QRect> &frames) const
    {
        return waitFor([&] { return cardFrames() == frames; });
    }
    [[nodiscard]] bool waitForPills(int count) const
    {
        return waitFor([&] { return m_desktop->panels().size() - cardFrames().size() == count; });
    }

    /// Whether the undo hotkey is held, so that no other program sees it.
    [[nodiscard]] bool isUndoBound() const
    {
        constexpr std::uint16_t superKey = 1U << 6;
        return m_desktop->isGrabbed(m_desktop->keyboard().codeOf("z"), superKey);
    }

    CardColumn m_column;
    TestWindow *m_window = nullptr;
};

TEST_P(ColumnGestures, ASidewaysWheelThrowsTheCardUnderThePointerAwayAndSuperZBringsItBack)
{
    Desktop &desktop = startWithCards(3);
    EXPECT_FALSE(isUndoBound());
    const QRect lowest = m_column.slot(0);

    // Ten points for each notch; 55 are needed.
    scrollAt(lowest.center(), Button::scrollRight, 5);
    EXPECT_TRUE(staysTrue([&] { return cardFrames().size() == 3; }, std::chrono::milliseconds(200)));
    scrollAt(lowest.center(), Button::scrollRight, 1);
    EXPECT_TRUE(waitForCards({m_column.slot(0), m_column.slot(1)}));
    EXPECT_TRUE(waitFor([&] { return isUndoBound(); }));
    // Nobody beneath has noticed, neither the wheel nor the keys that follow.
    EXPECT_TRUE(m_window->buttonPresses().isEmpty());

    desktop.press("Super+z");
    EXPECT_TRUE(waitForCards({m_column.slot(0), m_column.slot(1), m_column.slot(2)}));
    EXPECT_TRUE(waitFor([&] { return !isUndoBound(); }));
    EXPECT_TRUE(m_window->hasFocus());

    // The combination is the front window's again.
    m_window->forgetInput();
    desktop.press("Super+z");
    EXPECT_TRUE(waitFor([&] { return !m_window->keyPresses().isEmpty(); }));
    EXPECT_EQ(cardFrames().size(), 3);
}

TEST_P(ColumnGestures, TheRestOfAScrollSparesTheNextCard)
{
    Desktop &desktop = startWithCards(3);

    scrollAt(m_column.slot(0).center(), Button::scrollRight, 25);
    EXPECT_TRUE(waitForCards({m_column.slot(0), m_column.slot(1)}));
    EXPECT_TRUE(staysTrue([&] { return cardFrames().size() == 2; }, std::chrono::milliseconds(500)));
    desktop.pointer().scroll(Button::scrollRight, 6);
    EXPECT_TRUE(waitForCards({m_column.slot(0)}));
}

TEST_P(ColumnGestures, TheWheelCollapsesAndExpandsTheColumn)
{
    Desktop &desktop = startWithCards(3);
    const QList<QRect> expanded = cardFrames();

    scrollAt(m_column.slot(1).center(), Button::scrollUp, 2);
    EXPECT_TRUE(waitFor([&] {
        const QList<QRect> now = cardFrames();
        // 28 points of the front card stand above the screen's lower edge.
        return now.size() == 3 &&
               now.last().top() + pixels(CardColumn::hitMargin) == m_column.workArea.bottom() + 1 - pixels(28);
    }));
    EXPECT_TRUE(waitForPills(1));

    const QRect front = cardFrames().last();
    scrollAt({front.center().x(), m_column.workArea.bottom() - pixels(10)}, Button::scrollDown, 2);
    EXPECT_TRUE(waitForCards(expanded));
    EXPECT_TRUE(waitForPills(2));

    // Elsewhere the wheel is not for the cards.
    scrollAt({pixels(900), pixels(600)}, Button::scrollUp, 5);
    EXPECT_TRUE(staysTrue([&] { return cardFrames() == expanded; }, std::chrono::milliseconds(300)));
    EXPECT_TRUE(waitForPills(0));
    (void)desktop;
}

TEST_P(ColumnGestures, ThePillClearsAllCardsAndSuperZBringsAllBack)
{
    Desktop &desktop = startWithCards(3);
    const QList<QRect> before = cardFrames();
    desktop.pointer().moveTo(before.first().center());
    ASSERT_TRUE(waitForPills(2));
    // Ten points above the column, 26 high.
    const QRect highest = before.last();
    desktop.pointer().click({highest.center().x(), highest.top() + pixels(CardColumn::hitMargin - 10 - 13)});

    desktop.waitForPanels(0);
    EXPECT_TRUE(m_window->hasFocus());
    desktop.press("Super+z");
    EXPECT_TRUE(waitForCards(before));
}

TEST_P(ColumnGestures, ThePillCollapsesTheColumn)
{
    Desktop &desktop = startWithCards(2);
    const QRect lowest = m_column.slot(0);
    desktop.pointer().moveTo(lowest.center());
    ASSERT_TRUE(waitForPills(2));
    desktop.waitForStillPicture();
    desktop.pointer().click({lowest.center().x(), lowest.bottom() - pixels(CardColumn::hitMargin)});
    EXPECT_TRUE(waitFor([&] { return cardFrames().last().bottom() > desktop.workArea().bottom(); }));
    EXPECT_TRUE(waitForPills(1));
}

INSTANTIATE_TEST_SUITE_P(On, ColumnGestures,
                         ::testing::Values(DesktopSetting{"Openbox"},
                                           DesktopSetting{"OpenboxPicomScale2", WindowManagerKind::openbox,
                                                          CompositorKind::plain, 2},
                                           DesktopSetting{"NoWindowManager", WindowManagerKind::none}),
                         DesktopSetting::nameOf);

class UndoHotkey : public DesktopTest {};

TEST_F(UndoHotkey, IsGivenBackTwelveSecondsAfterTheLastRemoval)
{
    Desktop &desktop = start({.size = cardFriendlyScreen});
    desktop.pointer().moveTo({900, 600});
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.waitForPanels(1);
    desktop.pointer().moveTo(CardColumn().slot(0).center());
    desktop.pointer().scroll(Button::scrollRight, 6);
    desktop.waitForPanels(0);

    const auto isBound = [&] { return desktop.isGrabbed(desktop.keyboard().codeOf("z"), 1U << 6); };
    EXPECT_TRUE(waitFor(isBound));
    EXPECT_TRUE(staysTrue(isBound, std::chrono::seconds(10)));
    EXPECT_TRUE(waitFor([&] { return !isBound(); }));
    desktop.press("Super+z");
    EXPECT_TRUE(staysTrue([&] { return desktop.panels().isEmpty(); }, std::chrono::milliseconds(300)));
}

} // namespace
} // namespace lumenfold::test
