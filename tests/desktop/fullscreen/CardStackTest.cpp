/// What several captures leave on the screen.
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class CardStack : public DesktopTest, public ::testing::WithParamInterface<CompositorKind> {
protected:
    Desktop &startHere()
    {
        Desktop &desktop = start({.size = cardFriendlyScreen, .compositor = GetParam()});
        m_background = desktop.paintBackground(knownPicture(cardFriendlyScreen));
        desktop.pointer().moveTo({1000, 400});
        return desktop;
    }

    void capture(Desktop &desktop)
    {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
    }

    QImage m_background;
};

TEST_P(CardStack, ASecondCaptureStandsAboveTheFirstAndShowsNoCard)
{
    Desktop &desktop = startHere();
    capture(desktop);
    desktop.waitForPanels(1);
    desktop.waitForStillPicture();

    capture(desktop);
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), m_background));
    const QList<WindowInfo> cards = desktop.waitForPanels(2);
    EXPECT_EQ(cards[0].frame, CardColumn().slot(0));
    EXPECT_EQ(cards[1].frame, CardColumn().slot(1));
}

TEST_P(CardStack, MoreCardsThanFitBecomeADeck)
{
    Desktop &desktop = startHere();
    constexpr int surplus = 2;
    for (int count = 1; count <= CardColumn::capacity + surplus; ++count) {
        capture(desktop);
        desktop.waitForPanels(count);
    }
    // Lowest first: the deck from its deepest card to its front, then those that stand alone.
    const QList<WindowInfo> cards = desktop.panels();
    const CardColumn column;
    for (int depth = 0; depth <= surplus; ++depth) {
        EXPECT_EQ(cards[surplus - depth].frame, column.overflowDeck(depth)) << "depth " << depth;
    }
    for (int number = 0; number < CardColumn::capacity - 1; ++number) {
        EXPECT_EQ(cards[surplus + 1 + number].frame, column.aboveOverflowDeck(number)) << "number " << number;
    }
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), m_background));
}

TEST_P(CardStack, EveryCaptureReplacesTheClipboard)
{
    Desktop &desktop = startHere();
    TestWindow &window = desktop.openWindow({.frame = {600, 200, 300, 200}});
    for (const unsigned seed : {5U, 6U, 7U}) {
        window.setPicture(knownPicture({300, 200}, seed));
        desktop.waitForStillPicture();
        capture(desktop);
        EXPECT_TRUE(samePicture(desktop.clipboardPicture().copy(600, 200, 300, 200), knownPicture({300, 200}, seed)));
    }
    EXPECT_EQ(desktop.clipboard().ownerChanges(), 3);
}

TEST_P(CardStack, StandsAboveAFullScreenWindow)
{
    Desktop &desktop = startHere();
    capture(desktop);
    desktop.waitForPanels(1);
    TestWindow &film = desktop.openWindow({.picture = knownPicture(cardFriendlyScreen, 3)});
    film.focus();
    film.setFullScreen(FullScreen::yes);
    desktop.waitForStillPicture();

    const QList<WindowInfo> windows = windowsOnScreen(desktop.connection());
    EXPECT_EQ(windows.last().pid, desktop.program().pid());
    EXPECT_GT(differingPixels(desktop.picture(), film.picture()), 0);

    // The film is what a capture shows, and it stays in front.
    capture(desktop);
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), film.picture()));
    desktop.waitForPanels(2);
    EXPECT_TRUE(film.hasFocus());
    EXPECT_EQ(windowsOnScreen(desktop.connection()).last().pid, desktop.program().pid());
}

TEST_P(CardStack, IsThereOnEveryWorkspace)
{
    Desktop &desktop = startHere();
    capture(desktop);
    desktop.waitForPanels(1);
    const QImage withCard = desktop.waitForStillPicture();

    // Window managers announce the workspace in the middle of the screen.
    const QRect card = CardColumn().slot(0) & QRect(QPoint(0, 0), desktop.server().size());
    desktop.windowManager().showWorkspace(1);
    desktop.waitForStillPicture();
    EXPECT_TRUE(samePicture(desktop.picture(card), withCard.copy(card)));
    ASSERT_EQ(desktop.panels().size(), 1);
    EXPECT_EQ(desktop.panels().first().frame, CardColumn().slot(0));
}

INSTANTIATE_TEST_SUITE_P(Compositors, CardStack, ::testing::Values(CompositorKind::none, CompositorKind::fading),
                         [](const auto &test) {
                             return test.param == CompositorKind::none ? "withoutCompositor" : "withFadingCompositor";
                         });

} // namespace
} // namespace lumenfold::test
