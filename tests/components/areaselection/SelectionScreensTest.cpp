#include "tests/components/areaselection/SelectionDesk.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"

namespace lumenfold::test {
namespace {

/// Two screens of different size beside each other, the main one on the left and lower.
class SelectionScreensTest : public SelectionDesk {
protected:
    SelectionScreensTest()
    {
        server().setMonitors({{.name = "left", .frame = left, .primary = true}, {.name = "right", .frame = right}});
        EXPECT_TRUE(waitFor([this] { return screens().all().size() == 2; }));
    }

    ~SelectionScreensTest() override
    {
        server().setMonitors({});
        EXPECT_TRUE(waitFor([this] { return screens().all().size() == 1; }));
    }

    const QRect left{0, 160, 640, 640};
    const QRect right{640, 0, 600, 480};
};

TEST_F(SelectionScreensTest, EachScreenHasAnOverlayOfItsSize)
{
    present();
    const QList<WindowInfo> shown = overlays();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(QRegion(shown[0].frame) | shown[1].frame, QRegion(left) | right);
    EXPECT_TRUE(shown[0].overrideRedirect);
    keyboard().press("Escape");
    EXPECT_FALSE(ending().rect);
}

TEST_F(SelectionScreensTest, AnAreaOfTheSecondScreenIsInGlobalPoints)
{
    startCompositor(CompositorKind::plain);
    present();
    const QRect area(right.topLeft() + px(20, 30), QSize(px(100), px(60)));
    drag(area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()));
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(area)) << "the main screen's bottom is the server's";
    EXPECT_EQ(selection.screen, screens().all().at(1));
    EXPECT_TRUE(samePicture(capture(selection), background().copy(area)));
}

TEST_F(SelectionScreensTest, ADragStaysOnTheScreenWhereItBegan)
{
    present();
    const QPoint from = left.topLeft() + px(100, 100);
    drag(from, right.topLeft() + px(100, 10)); // to the right of the left screen, and above its top
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(QRect(QPoint(from.x(), left.top()), QPoint(left.right(), from.y() - 1))));
    EXPECT_EQ(selection.screen, screens().main());
}

TEST_F(SelectionScreensTest, AnUnpluggedScreenLosesItsOverlayAndTheRestGoesOn)
{
    present();
    pressAndDragTo(right.topLeft() + px(20, 30), right.topLeft() + px(90, 90));
    server().setMonitors({{.name = "left", .frame = left, .primary = true}});
    ASSERT_TRUE(waitFor([this] { return overlays().size() == 1; }));
    EXPECT_EQ(overlays().at(0).frame, left);
    EXPECT_EQ(endingCount(), 0U);
    pointer().up();
    keyboard().press("Escape");
    EXPECT_FALSE(ending().rect);
}

TEST_F(SelectionScreensTest, AScreenThatIsPluggedInIsCovered)
{
    server().setMonitors({{.name = "left", .frame = left, .primary = true}});
    ASSERT_TRUE(waitFor([this] { return screens().all().size() == 1; }));
    present();
    server().setMonitors({{.name = "left", .frame = left, .primary = true}, {.name = "right", .frame = right}});
    EXPECT_TRUE(waitFor([this] { return overlays().size() == 2; }));
    keyboard().press("Escape");
    EXPECT_FALSE(ending().rect);
    EXPECT_EQ(overlays().size(), 0);
}

} // namespace
} // namespace lumenfold::test
