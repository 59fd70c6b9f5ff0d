#include "tests/components/cards/CardDesk.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/Windows.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

namespace lumenfold::test {
namespace {

class CardsOnScreenTest : public ::testing::Test, public CardDesk {
protected:
    CardsOnScreenTest()
    {
        m_background = QImage(server().size(), QImage::Format_RGB32);
        m_background.fill(QColor(120, 160, 200));
        server().paintRoot(m_background);
    }

    /// Shows the picture as a card, and returns where the card stands.
    QRect show(const QImage &picture)
    {
        controller().show(Image::fromPixels(picture));
        settle();
        return pixelsOfCard(controller().cards().back()->panel->frame());
    }

    /// Where the first card will stand.
    [[nodiscard]] QRect firstCard() const
    {
        const Size size = config().previewCardDefaultSize();
        const double margin = AppConfig::previewCardHitMargin;
        const double corner = AppConfig::previewMargin - margin;
        return pixelsOfCard({corner, corner, size.width + 2 * margin, size.height + 2 * margin});
    }

    /// Without the border and the rounded corners.
    [[nodiscard]] QRect inside(const QRect &card) const
    {
        const int corner = 14 * scale();
        return card.marginsRemoved({corner, corner, corner, corner});
    }

    [[nodiscard]] QColor colourAt(QPoint place) const { return screen().pixelColor(place); }

    QImage m_background;
};

TEST_F(CardsOnScreenTest, aPictureOfTheCardsSizeIsShownPixelForPixel)
{
    const QImage picture = knownPicture(firstCard().size());

    const QRect card = show(picture);
    ASSERT_EQ(card, firstCard());
    EXPECT_EQ(differingPixels(screen().copy(inside(card)), picture.copy(inside(card).translated(-card.topLeft()))), 0);
}

TEST_F(CardsOnScreenTest, aWidePictureFillsTheCardWithItsMiddle)
{
    // Scaled to the card's height it is three times as wide: a third to the left, a third to the right.
    const QSize size = firstCard().size();
    QImage picture(size.width() * 6, size.height() * 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QImage middle = knownPicture({size.width() * 2, size.height() * 2});
    for (int y = 0; y < middle.height(); ++y) {
        for (int x = 0; x < middle.width(); ++x) {
            picture.setPixel(x + 2 * size.width(), y, middle.pixel(x, y));
        }
    }

    const QRect card = show(picture);
    const QImage scaled = Image::fromPixels(picture).thumbnail({size.width() * 3, size.height()});
    const QRect part = inside(card).translated(-card.topLeft()).translated(size.width(), 0);
    // The toolkit, which scales the picture here, rounds in its own way.
    const int difference = largestDifference(screen().copy(inside(card)), scaled.copy(part));
    EXPECT_GE(difference, 0);
    EXPECT_LE(difference, 2);
}

TEST_F(CardsOnScreenTest, aPictureFromAFileIsShownLikeANewOne)
{
    const QImage picture = knownPicture(firstCard().size());
    const auto png = Image::fromPixels(picture).pngData();
    ASSERT_TRUE(png);
    const Image loaded = Image::fromPng(*png);

    controller().show(loaded);
    settle();
    const QRect card = firstCard();
    const QImage expected = picture.copy(inside(card).translated(-card.topLeft()));
    EXPECT_TRUE(waitFor([&] { return differingPixels(screen().copy(inside(card)), expected) == 0; }));
    EXPECT_FALSE(loaded.holdsPixels());
}

TEST_F(CardsOnScreenTest, aCardAtRestKeepsNoFullSizePixels)
{
    const Image image = Image::fromPixels(photographLike({1600, 1200}));

    controller().show(image);
    EXPECT_TRUE(waitFor([&] { return !image.holdsPixels(); }));
    EXPECT_TRUE(image.isEncoded());
}

TEST_F(CardsOnScreenTest, withoutACompositorNothingAroundTheRoundedCardIsTouched)
{
    const QRect card = show(knownPicture(firstCard().size()));

    // The round buttons at the upper corners reach 22 points out of the card.
    const int outside = 22 * scale();
    EXPECT_TRUE(card.adjusted(-outside, -outside, outside, 0).contains(differingRegion(screen(), m_background)));
    EXPECT_EQ(colourAt(card.bottomLeft()), m_background.pixelColor(0, 0));
    EXPECT_EQ(colourAt(card.bottomRight()), m_background.pixelColor(0, 0));
    EXPECT_EQ(colourAt({card.left() - 2 * scale(), card.center().y()}), m_background.pixelColor(0, 0));
    EXPECT_EQ(colourAt({card.center().x(), card.top() - 2 * scale()}), m_background.pixelColor(0, 0));
    const QPoint middleOfClose = card.topLeft() - QPoint(10, 10) * scale();
    EXPECT_NE(colourAt(middleOfClose), m_background.pixelColor(0, 0));
    EXPECT_EQ(colourAt(middleOfClose - QPoint(11, 11) * scale()), m_background.pixelColor(0, 0));
    EXPECT_NE(colourAt(card.center()), m_background.pixelColor(0, 0));
}

TEST_F(CardsOnScreenTest, withACompositorTheCardThrowsASoftShadowDownwards)
{
    startCompositor(CompositorKind::plain);
    const QRect card = show(knownPicture(firstCard().size()));

    const int point = scale();
    const int bare = m_background.pixelColor(0, 0).green();
    const auto green = [&](int x, int y) { return colourAt({x, y}).green(); };
    const int below = green(card.center().x(), card.bottom() + 4 * point);
    const int furtherBelow = green(card.center().x(), card.bottom() + 16 * point);
    const int above = green(card.center().x(), card.top() - 4 * point);
    EXPECT_LT(below, furtherBelow);
    EXPECT_LT(furtherBelow, bare);
    EXPECT_LT(below, above);
    // Nothing of it is cut off at the panel's edge: it has faded out before.
    EXPECT_NEAR(green(card.right() + 29 * point, card.center().y()), bare, 1);
}

TEST_F(CardsOnScreenTest, theShadowComesWithTheCompositor)
{
    const QRect card = show(knownPicture(firstCard().size()));
    const QPoint below(card.center().x(), card.bottom() + 4 * scale());
    ASSERT_EQ(colourAt(below), m_background.pixelColor(0, 0));

    startCompositor(CompositorKind::plain);
    EXPECT_TRUE(waitFor([&] { return colourAt(below) != m_background.pixelColor(0, 0); }));
}

TEST_F(CardsOnScreenTest, nothingOfACardIsOnScreenWhileACaptureIsTaken)
{
    for (const auto kind : {CompositorKind::none, CompositorKind::plain}) {
        if (kind != CompositorKind::none) {
            startCompositor(kind);
        }
        for (int number = 0; number < 3; ++number) {
            show(knownPicture(firstCard().size(), static_cast<unsigned>(number)));
        }

        controller().setHiddenForCapture(true);
        EXPECT_TRUE(waitFor([&] { return differingPixels(screen(), m_background) == 0; }));
        controller().setHiddenForCapture(false);
        settle();
        EXPECT_NE(differingPixels(screen(), m_background), 0);
    }
}

TEST_F(CardsOnScreenTest, cardsThatAreCoveredHaveNoWindowOnScreen)
{
    for (int number = 0; number < 9; ++number) {
        show(knownPicture({40, 30}, static_cast<unsigned>(number)));
    }

    // Three cards by themselves and three layers of the deck.
    EXPECT_TRUE(waitFor([&] { return windowsOf(server().connection(), ::getpid()).size() == 6; }));
}

TEST_F(CardsOnScreenTest, aClickBesideTheCardReachesTheWindowBeneath)
{
    for (const auto kind : {CompositorKind::none, CompositorKind::plain}) {
        if (kind != CompositorKind::none) {
            startCompositor(kind);
        }
        TestWindow beneath(server(), {.frame = QRect(QPoint(0, 0), server().size())});
        const QRect card = show(knownPicture(firstCard().size()));
        Pointer pointer(server().display());

        pointer.click(card.topRight() + QPoint(10 * scale(), 20 * scale()));
        EXPECT_TRUE(waitFor([&] { return beneath.buttonPresses().size() == 1; }));
        pointer.click(card.center());
        EXPECT_TRUE(staysTrue([&] { return beneath.buttonPresses().size() == 1; }, std::chrono::milliseconds(200)));
    }
}

TEST_F(CardsOnScreenTest, aClickOnACardOfTheDeckLiftsItToTheFront)
{
    for (int number = 0; number < 3; ++number) {
        show(knownPicture(firstCard().size(), static_cast<unsigned>(number)));
    }
    controller().toggleCollapse();
    settle();
    const auto oldest = controller().stackCards().front();
    const QRect strip = pixelsOfCard(oldest->panel->frame());
    Pointer pointer(server().display());

    // The front card, whose top is 40 points lower, does not want to be brought to the front.
    pointer.click(strip.topLeft() + QPoint(strip.width() / 2, 60 * scale()));
    EXPECT_TRUE(staysTrue([&] { return !controller().isDeckRevealed(); }, std::chrono::milliseconds(200)));

    pointer.click(strip.topLeft() + QPoint(strip.width() / 2, 8 * scale()));
    EXPECT_TRUE(waitFor([&] { return controller().stackCards().back() == oldest; }));
    EXPECT_TRUE(controller().isDeckRevealed());
}

TEST_F(CardsOnScreenTest, aCardTellsAssistiveTechnologyWhatItIs)
{
    show(knownPicture({40, 30}));

    const QWidgetList widgets = QApplication::allWidgets();
    EXPECT_TRUE(std::ranges::any_of(widgets, [](const QWidget *widget) {
        return widget->accessibleName() == QStringLiteral("Screenshot, 40 × 30 pixels");
    }));
}

} // namespace
} // namespace lumenfold::test
