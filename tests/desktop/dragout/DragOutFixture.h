#pragma once

#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DropTarget.h"

#include <QByteArray>
#include <QImage>
#include <QRect>

namespace lumenfold::test {

/// A card, and hands that drag it.
class DragOut : public DesktopSettingTest {
protected:
    /// A desktop with one card.
    Desktop &startWithCard(const QImage &background = {});

    /// Takes hold of the card's picture, outside the buttons that come with the pointer, and drags it there.
    void dragTo(DropTarget &target, QPoint place, DropManner manner = DropManner::takesTheDrop);

    /// Takes hold of the picture and begins to drag it; returns when the picture is under the pointer.
    void takeHold();

    /// Where it is. Movements with a button held are none to the column, so one follows without.
    void letGo();

    QByteArray m_png;
    QRect m_card;
    bool m_nudge = false;

private:
    [[nodiscard]] QPoint gripOfTheCard() const;
};

} // namespace lumenfold::test
