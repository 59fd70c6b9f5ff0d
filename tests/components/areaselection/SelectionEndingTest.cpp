#include "tests/components/areaselection/SelectionDesk.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

/// Both on a desktop that blends windows and on one that does not.
class SelectionEndingTest : public SelectionDesk, public ::testing::WithParamInterface<CompositorKind> {
protected:
    SelectionEndingTest()
    {
        if (GetParam() != CompositorKind::none) {
            startCompositor(GetParam());
        }
    }
};

TEST_P(SelectionEndingTest, AnAreaIsReportedAndThePictureOfItShowsTheDesktopAlone)
{
    present();
    const QRect area(px(101, 57), QSize(px(200), px(123)));
    drag(area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()));
    const Ending selection = ending();
    EXPECT_EQ(overlays().size(), 0);
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(area));
    EXPECT_EQ(selection.screen, screens().main());
    EXPECT_TRUE(samePicture(capture(selection), background().copy(area)));
}

TEST_P(SelectionEndingTest, NothingIsLeftOnTheScreen)
{
    present();
    drag(px(10, 10), px(310, 210));
    static_cast<void>(ending());
    EXPECT_TRUE(samePicture(settledPicture(), background()));
}

TEST_P(SelectionEndingTest, EscapeCancelsAlsoDuringADrag)
{
    present();
    keyboard().press("Escape");
    EXPECT_FALSE(ending().rect);
    EXPECT_FALSE(ending().screen);

    present();
    pressAndDragTo(px(100, 100), px(200, 200));
    keyboard().press("Escape");
    waitUntil("the second end", [this] { return endingCount() == 2; });
    EXPECT_FALSE(ending().rect);
    EXPECT_FALSE(ending().screen);
    EXPECT_EQ(overlays().size(), 0);
}

TEST_P(SelectionEndingTest, ARightClickCancels)
{
    present();
    pointer().click(px(100, 100), Button::right);
    EXPECT_FALSE(ending().rect);
    EXPECT_FALSE(ending().screen);
}

TEST_P(SelectionEndingTest, AClickCancels)
{
    present();
    pointer().click(px(100, 100));
    const Ending selection = ending();
    EXPECT_FALSE(selection.rect);
    EXPECT_TRUE(selection.screen);
}

TEST_P(SelectionEndingTest, OtherKeysDoNothingAndReachNobody)
{
    TestWindow other(server(), {.frame = {px(50), px(50), px(100), px(80)}});
    other.focus();
    present();
    keyboard().press("a");
    keyboard().press("Return");
    EXPECT_TRUE(staysTrue([this] { return endingCount() == 0; }, 150ms));
    EXPECT_EQ(other.keyPresses().size(), 0);
    keyboard().press("Escape");
    static_cast<void>(ending());
    EXPECT_EQ(other.keyPresses().size(), 0);
}

TEST_P(SelectionEndingTest, TheFrontWindowKeepsItsFocusAndGetsItsKeysBack)
{
    TestWindow other(server(), {.frame = {px(50), px(50), px(100), px(80)}});
    other.focus();
    present();
    EXPECT_TRUE(other.hasFocus());
    drag(px(200, 200), px(300, 300));
    static_cast<void>(ending());
    EXPECT_TRUE(other.hasFocus());
    keyboard().press("a");
    EXPECT_TRUE(waitFor([&] { return other.keyPresses().size() == 1; }));
}

INSTANTIATE_TEST_SUITE_P(OnEveryDesktop, SelectionEndingTest,
                         ::testing::Values(CompositorKind::none, CompositorKind::plain, CompositorKind::fading),
                         desktopName);

} // namespace
} // namespace lumenfold::test
