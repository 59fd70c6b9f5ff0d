#include "tests/components/areaselection/SelectionDesk.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"

namespace lumenfold::test {
namespace {

/// How the overlay looks on the screen.
class SelectionPictureTest : public SelectionDesk, public ::testing::WithParamInterface<CompositorKind> {
protected:
    SelectionPictureTest()
    {
        if (GetParam() != CompositorKind::none) {
            startCompositor(GetParam());
        }
    }

    [[nodiscard]] qint64 undimmedPixels(const QImage &picture, const QRect &part) const
    {
        qint64 count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                count += isDimmed(picture, {x, y}) ? 0 : 1;
            }
        }
        return count;
    }
};

TEST_P(SelectionPictureTest, TheWholeScreenIsDimmed)
{
    present();
    const QImage picture = settledPicture();
    EXPECT_EQ(undimmedPixels(picture, picture.rect()), 0);
}

TEST_P(SelectionPictureTest, TheSelectionIsAClearHoleWithOutlineAndLabel)
{
    present();
    const QRect area(px(100, 120), QSize(px(200), px(90)));
    pressAndDragTo(area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()));
    const QImage picture = settledPicture();

    const int outline = px(1) + 1;
    const QRect inside = area.adjusted(outline, outline, -outline, -outline);
    EXPECT_TRUE(samePicture(picture.copy(inside), background().copy(inside)));

    const QColor edge = picture.pixelColor(area.left(), area.center().y());
    EXPECT_LT(edge.red(), 130);
    EXPECT_GT(edge.blue(), 150);

    // The label's lower left corner is 6 points right of and above the selection's upper right one.
    const QPoint labelCorner = area.topLeft() + QPoint(area.width(), 0) + QPoint(px(6), -px(6));
    const QRgb accent = qRgb(29, 161, 242);
    EXPECT_EQ(picture.pixel(labelCorner + QPoint(0, -1)), accent);
    EXPECT_TRUE(isDimmed(picture, labelCorner + QPoint(-1, -1)));
    EXPECT_TRUE(isDimmed(picture, labelCorner));

    const QRect label(labelCorner - QPoint(0, px(20)), QSize(px(80), px(20)));
    const QRegion marks = QRegion(area.adjusted(-outline, -outline, outline, outline)) | label;
    for (const QRect &part : QRegion(picture.rect()) - marks) {
        EXPECT_EQ(undimmedPixels(picture, part), 0);
    }
}

TEST_P(SelectionPictureTest, WhatTheDragLeavesIsDimmedAgain)
{
    present();
    pressAndDragTo(px(100, 100), px(400, 300));
    dragOnTo(px(60, 80));
    dragOnTo(px(160, 150));
    const QImage picture = settledPicture();
    const QRect marks(px(97, 70), QSize(px(160), px(84)));
    for (const QRect &part : QRegion(picture.rect()) - marks) {
        EXPECT_EQ(undimmedPixels(picture, part), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(OnEveryDesktop, SelectionPictureTest,
                         ::testing::Values(CompositorKind::none, CompositorKind::plain), desktopName);

} // namespace
} // namespace lumenfold::test
