#include "cards/face/ImagePreviewGeometry.h"
#include "cards/face/ImagePreviewView.h"
#include "cards/face/ImagePreviewWindowController.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeHotKeyService.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/unit/cardface/CardFaceFixture.h"

#include <cmath>

namespace lumenfold::test {
namespace {

constexpr std::uint32_t escapeKey = 53;
constexpr Rect plainFrame{0, 0, 1440, 900};

void expectSize(Size actual, Size expected)
{
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

TEST(ImagePreviewGeometryTest, aWidePictureTakesTheBoxsWidth)
{
    expectSize(imagePreviewSize(plainFrame.size(), 4), {1008, 252});
    expectSize(imagePreviewFrame(plainFrame, 4, 52).size(), {1112, 356});
}

TEST(ImagePreviewGeometryTest, aTallPictureTakesTheBoxsHeight)
{
    expectSize(imagePreviewSize(plainFrame.size(), 0.5), {315, 630});
    expectSize(imagePreviewFrame(plainFrame, 0.5, 52).size(), {419, 734});
}

TEST(ImagePreviewGeometryTest, theWindowStandsInTheMiddleOfTheVisibleFrame)
{
    const Rect frame = imagePreviewFrame(Rect{100, 50, 1000, 600}, 1, 52);
    EXPECT_EQ(frame, (Rect{600 - 210 - 52, 350 - 210 - 52, 420 + 104, 420 + 104}));
}

TEST(ImagePreviewGeometryTest, withoutAScreenOneOfAUsualSizeIsTakenForGranted)
{
    EXPECT_EQ(imagePreviewFrame(std::nullopt, 4, 52), imagePreviewFrame(plainFrame, 4, 52));
}

class ImagePreviewTest : public ::testing::Test {
protected:
    [[nodiscard]] ImagePreviewView *shownView() const
    {
        FakePanel *panel = panels.lastPanel();
        return panel == nullptr ? nullptr : dynamic_cast<ImagePreviewView *>(panel->contentView());
    }

    FakeMainQueue queue;
    FakePanelFactory panels{queue};
    FakeAppearance appearance;
    FakeScreens screens;
    FakeKeyEventTapService taps;
    FakeHotKeyService hotKeys;
    std::unique_ptr<ImagePreviewWindowController> controller = std::make_unique<ImagePreviewWindowController>(
        ImagePreviewWindowController::Collaborators{.panels = panels,
                                                    .appearance = appearance,
                                                    .screens = screens,
                                                    .keys = {.taps = taps, .hotKeys = hotKeys, .queue = queue}});
};

TEST_F(ImagePreviewTest, thePictureIsShownInTheMiddleOfTheMainScreen)
{
    controller->present(picture({400, 100}));

    FakePanel *panel = panels.lastPanel();
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->frame(), imagePreviewFrame(screens.main()->visibleFrame, 4, 52));
    EXPECT_EQ(panel->options().level, PanelLevel::floating);
    EXPECT_EQ(panel->options().transparentMargin, 52);
}

TEST_F(ImagePreviewTest, aSmallPictureIsEnlarged)
{
    controller->present(picture({16, 16}));
    EXPECT_GT(panels.lastPanel()->frame().width, 600);
}

TEST_F(ImagePreviewTest, aSecondPictureTakesThePlaceOfTheFirst)
{
    controller->present(picture({400, 100}));
    controller->present(picture({100, 200}));

    ASSERT_EQ(panels.panels().size(), 1U);
    EXPECT_EQ(panels.lastPanel()->frame(), imagePreviewFrame(screens.main()->visibleFrame, 0.5, 52));
    EXPECT_EQ(taps.openTaps(), 1U);
}

TEST_F(ImagePreviewTest, escapeClosesAndAFurtherEscapeIsTheApplications)
{
    controller->present(picture());
    controller->present(picture());
    EXPECT_EQ(taps.press(escapeKey), TapDisposition::swallow);
    queue.runPosted();
    EXPECT_TRUE(panels.panels().empty());
    EXPECT_TRUE(hotKeys.registered().empty());

    EXPECT_EQ(taps.press(escapeKey), TapDisposition::passOn);
}

TEST_F(ImagePreviewTest, otherKeysPass)
{
    controller->present(picture());
    EXPECT_EQ(taps.press(0), TapDisposition::passOn);
    EXPECT_EQ(panels.panels().size(), 1U);
}

TEST_F(ImagePreviewTest, theCloseButtonCloses)
{
    controller->present(picture({400, 300}));
    ImagePreviewView *view = shownView();
    ASSERT_NE(view, nullptr);
    view->resize(504, 404);
    view->show();
    QAbstractButton *close = buttonNamed(*view, QStringLiteral("Close preview"));
    ASSERT_NE(close, nullptr);
    // Its middle is 10 points outside the picture's corner.
    EXPECT_EQ(close->geometry(), QRect(452 + 10 - 12, 52 - 10 - 12, 24, 24));
    EXPECT_TRUE(view->pointerShape().contains(close->geometry().center()));

    close->click();
    EXPECT_TRUE(panels.panels().empty());
    controller->close();
}

TEST_F(ImagePreviewTest, aPictureFromAFileIsSeenAtOnceAndSharpALittleLater)
{
    QImage pixels(800, 600, QImage::Format_RGB32);
    pixels.fill(Qt::darkCyan);
    const auto png = Image::fromPixels(pixels).pngData();
    ASSERT_TRUE(png);
    const Image image = Image::fromPng(*png);
    image.releasePixelsWhenEncoded();
    ASSERT_EQ(image.thumbnail({160, 120}).size(), QSize(160, 120));

    ImagePreviewView view({.image = image, .hitMargin = 52, .onClose = {}}, appearance, panels);
    EXPECT_EQ(view.picture().picture().size(), QSize(160, 120));
    EXPECT_FALSE(view.picture().isComplete());
    view.resize(400 + 104, 300 + 104);
    view.show();
    EXPECT_FALSE(view.picture().isComplete());
    EXPECT_TRUE(waitFor([&] { return view.picture().isComplete(); }));
    EXPECT_EQ(view.picture().picture().size(), view.content().size() * view.devicePixelRatio());
    EXPECT_FALSE(image.holdsPixels());
}

TEST_F(ImagePreviewTest, aPictureWithNothingToDrawIsAPlainGround)
{
    ImagePreviewView view({.image = Image::withoutRepresentation({40, 30}), .hitMargin = 52, .onClose = {}}, appearance,
                          panels);
    view.resize(400, 300);
    view.show();
    EXPECT_TRUE(waitFor([&] { return view.picture().isComplete(); }));
    EXPECT_FALSE(view.grab().isNull());
}

} // namespace
} // namespace lumenfold::test
