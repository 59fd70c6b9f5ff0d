#include "capture/areaselection/SelectionDrag.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

constexpr Size view{1000, 500};

TEST(SelectionDrag, BeginsWithAnEmptyRectangleAtTheSnappedPoint)
{
    SelectionDrag drag;
    drag.begin({103, 200}, {.snapXs = {100}, .snapYs = {}}, view);
    EXPECT_EQ(drag.startPoint(), (Point{100, 200}));
    EXPECT_EQ(drag.currentRect(), (Rect{100, 200, 0, 0}));
}

TEST(SelectionDrag, GoesInEveryDirection)
{
    SelectionDrag drag;
    drag.begin({100, 200}, {}, view);
    drag.drag({150, 260});
    EXPECT_EQ(drag.currentRect(), (Rect{100, 200, 50, 60}));
    drag.drag({40, 180});
    EXPECT_EQ(drag.currentRect(), (Rect{40, 180, 60, 20}));
    EXPECT_EQ(drag.end(), (Rect{40, 180, 60, 20}));
}

TEST(SelectionDrag, EndsOnAnEdgeThatIsNearEnough)
{
    const SnapEdges edges{.snapXs = {300}, .snapYs = {400}};
    SelectionDrag drag;
    drag.begin({100, 100}, edges, view);
    drag.drag({307.9, 392.1});
    EXPECT_EQ(drag.end(), (Rect{100, 100, 200, 300}));

    drag.begin({100, 100}, edges, view);
    drag.drag({308, 392});
    EXPECT_EQ(drag.end(), (Rect{100, 100, 208, 292}));
}

TEST(SelectionDrag, OfFivePointsIsASelectionAndOfFourNone)
{
    SelectionDrag drag;
    drag.begin({100, 100}, {}, view);
    drag.drag({105, 105});
    EXPECT_EQ(drag.end(), (Rect{100, 100, 5, 5}));

    drag.begin({100, 100}, {}, view);
    drag.drag({104, 140});
    EXPECT_EQ(drag.end(), std::nullopt);

    drag.begin({100, 100}, {}, view);
    drag.drag({140, 104});
    EXPECT_EQ(drag.end(), std::nullopt);
}

TEST(SelectionDrag, WithoutAMoveIsAClick)
{
    SelectionDrag drag;
    drag.begin({100, 100}, {}, view);
    EXPECT_EQ(drag.end(), std::nullopt);
}

TEST(SelectionDrag, IsForgottenAtItsEnd)
{
    SelectionDrag drag;
    drag.begin({100, 100}, {}, view);
    drag.drag({200, 200});
    drag.end();
    EXPECT_EQ(drag.startPoint(), std::nullopt);
    EXPECT_EQ(drag.currentRect(), std::nullopt);
    EXPECT_EQ(drag.end(), std::nullopt);
}

TEST(SelectionDrag, DoesNothingBeforeItBegins)
{
    SelectionDrag drag;
    drag.drag({200, 200});
    EXPECT_EQ(drag.currentRect(), std::nullopt);
    EXPECT_EQ(drag.end(), std::nullopt);
}

TEST(SelectionDrag, IsForgottenWhenCancelled)
{
    SelectionDrag drag;
    drag.begin({100, 100}, {}, view);
    drag.drag({200, 200});
    drag.cancel();
    drag.drag({300, 300});
    EXPECT_EQ(drag.currentRect(), std::nullopt);
    EXPECT_EQ(drag.end(), std::nullopt);
}

TEST(SelectionDrag, StaysOnItsScreenWhereverThePointerGoes)
{
    SelectionDrag drag;
    drag.begin({100, 100}, {.snapXs = {-3, 0, 1000}, .snapYs = {-3, 0, 500}}, view);
    drag.drag({2500, -40});
    EXPECT_EQ(drag.currentRect(), (Rect{100, 0, 900, 100}));
    drag.drag({-2500, 900});
    EXPECT_EQ(drag.currentRect(), (Rect{0, 100, 100, 400}));
}

} // namespace
} // namespace lumenfold
