#include "tests/desktop/dragout/DragOutFixture.h"

namespace lumenfold::test {

Desktop &DragOut::startWithCard(const QImage &background)
{
    Desktop &desktop = start(GetParam().options());
    desktop.paintBackground(background.isNull() ? knownPicture(cardFriendlyScreen * GetParam().scale) : background);
    desktop.pointer().moveTo({pixels(1200), pixels(100)});
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.waitForPanels(1);
    desktop.waitForStillPicture();
    m_png = desktop.clipboardPng();
    m_card = CardColumn{.workArea = desktop.workArea(), .scale = GetParam().scale}.slot(0);
    return desktop;
}

QPoint DragOut::gripOfTheCard() const
{
    return m_card.topLeft() + QPoint(pixels(CardColumn::hitMargin + 6), pixels(70));
}

void DragOut::dragTo(DropTarget &target, QPoint place, DropManner manner)
{
    Pointer &pointer = m_desktop->pointer();
    const QPoint from = gripOfTheCard();
    pointer.moveTo(from);
    pointer.down();
    pointer.moveTo(from + QPoint(pixels(30), 0));
    // The file is made, and the drag begins.
    EXPECT_TRUE(target.waitFor([&] {
        pointer.moveTo(place + QPoint(m_nudge = !m_nudge, 0));
        return target.isEntered() && (target.isAnswerKnown() || manner == DropManner::neverAnswers);
    }));
}

void DragOut::takeHold()
{
    Pointer &pointer = m_desktop->pointer();
    const QPoint from = gripOfTheCard();
    pointer.moveTo(from);
    // The card and the pill beside it.
    EXPECT_TRUE(waitFor([&] { return m_desktop->panels().size() == 2; }));
    pointer.down();
    pointer.moveTo(from + QPoint(pixels(30), 0));
    EXPECT_TRUE(waitFor([&] { return m_desktop->panels().size() > 2; }));
}

void DragOut::letGo()
{
    Pointer &pointer = m_desktop->pointer();
    pointer.up();
    pointer.moveTo(pointer.place() + QPoint(1, 1));
}

} // namespace lumenfold::test
