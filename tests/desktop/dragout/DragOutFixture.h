#pragma once

#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/DropTarget.h"

#include <QByteArray>
#include <QImage>
#include <QRect>

namespace lumenfold::test {

/// A card, and hands that drag it.
class DragOut : public DesktopTest, public ::testing::WithParamInterface<DesktopSetting> {
protected:
    /// A desktop with one card.
    Desktop &startWithCard(const QImage &background = {});

    [[nodiscard]] int pixels(int points) const { return points * GetParam().scale; }
    [[nodiscard]] QRect pixels(QRect points) const
    {
        return {points.topLeft() * GetParam().scale, points.size() * GetParam().scale};
    }

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
