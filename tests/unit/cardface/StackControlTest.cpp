#include "cards/face/StackControl.h"
#include "cards/StackControlState.h"
#include "tests/unit/cardface/CardFaceFixture.h"

namespace lumenfold::test {
namespace {

class StackControlTest : public ::testing::Test {
protected:
    StackControlTest()
    {
        state.onToggle = [this] { ++toggles; };
        state.onClearAll = [this] { ++clears; };
        collapse.resize(68, 48);
        clear.resize(156, 50);
    }

    [[nodiscard]] static QColor pixel(QWidget &view, QPoint place)
    {
        QImage seen(view.size(), QImage::Format_ARGB32_Premultiplied);
        seen.fill(Qt::transparent);
        view.render(&seen, {}, {}, QWidget::DrawChildren);
        return seen.pixelColor(place);
    }

    /// The highest place of a collapse pill's chevron in that column.
    [[nodiscard]] int topOfChevron(int column)
    {
        const QImage seen = collapse.grab().toImage();
        int y = 14;
        while (y < 34 && seen.pixelColor(column, y).green() > 120) {
            ++y;
        }
        return y;
    }

    int toggles = 0;
    int clears = 0;
    FakeMainQueue queue;
    FakePanelFactory panels{queue};
    FakeAppearance appearance;
    StackControlState state;
    StackControlButton collapse{state, appearance, panels};
    ClearAllButton clear{state, appearance, panels};
};

TEST_F(StackControlTest, thePillFollowsTheColumnWhateverCollapsedIt)
{
    EXPECT_EQ(collapse.toolTip(), QStringLiteral("Collapse screenshots"));
    EXPECT_GT(topOfChevron(34), topOfChevron(30));

    state.setCollapsed(true);
    EXPECT_EQ(collapse.toolTip(), QStringLiteral("Expand screenshots"));
    EXPECT_EQ(collapse.accessibleName(), QStringLiteral("Expand screenshots"));
    EXPECT_LT(topOfChevron(34), topOfChevron(30));

    state.setCollapsed(false);
    EXPECT_EQ(collapse.toolTip(), QStringLiteral("Collapse screenshots"));
    EXPECT_GT(topOfChevron(34), topOfChevron(30));
}

TEST_F(StackControlTest, aPressIsReportedOnce)
{
    click(collapse, {34, 24});
    EXPECT_EQ(toggles, 1);
    EXPECT_EQ(clears, 0);

    click(clear, {78, 25});
    click(clear, {78, 25});
    EXPECT_EQ(clears, 2);
    EXPECT_EQ(toggles, 1);
}

TEST_F(StackControlTest, thePanelAroundAPillTakesNoPresses)
{
    click(collapse, {4, 4});
    click(clear, {4, 25});
    EXPECT_EQ(toggles + clears, 0);
    EXPECT_FALSE(collapse.pointerShape().contains(QPoint(4, 4)));
    EXPECT_FALSE(clear.pointerShape().contains(QPoint(4, 25)));
    EXPECT_TRUE(collapse.pointerShape().contains(QPoint(34, 24)));
}

TEST_F(StackControlTest, thePillsStandInTheMiddleOfTheirPanels)
{
    EXPECT_EQ(collapse.opaqueShape(1).boundingRect(), QRect(12, 12, 44, 24));
    EXPECT_EQ(clear.opaqueShape(1).boundingRect().height(), 26);
    EXPECT_EQ(clear.opaqueShape(1).boundingRect().center().y(), 24);
    EXPECT_EQ(clear.toolTip(), QStringLiteral("Clear stacked screenshots"));
    EXPECT_EQ(clear.text(), QStringLiteral("Clear"));
}

TEST_F(StackControlTest, theColoursAreOtherOnesInTheDark)
{
    const QPoint ground(20, 24);
    const QPoint edge(34, 12);
    EXPECT_EQ(pixel(collapse, ground), QColor(217, 217, 219));
    EXPECT_NEAR(pixel(collapse, edge).red(), 217 * (1 - 0.16), 2);

    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_EQ(pixel(collapse, ground), QColor(58, 58, 60));
    EXPECT_NEAR(pixel(collapse, edge).red(), 58 + (255 - 58) * 0.16, 2);
}

TEST_F(StackControlTest, withoutACompositorThereIsNoShadow)
{
    const QPoint beneath(34, 40);
    EXPECT_GT(pixel(collapse, beneath).alpha(), 0);
    panels.setTranslucencyAvailable(false);
    EXPECT_EQ(pixel(collapse, beneath).alpha(), 0);
}

} // namespace
} // namespace lumenfold::test
