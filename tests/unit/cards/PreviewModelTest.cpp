#include "cards/PreviewModel.h"

#include "tests/unit/cards/CardsFixture.h"

#include <QRegularExpression>
#include <QUuid>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

class PreviewModelTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<PreviewModel> stackCard(const Image &image) const
    {
        return std::make_unique<PreviewModel>(config, PreviewModel::Options{.image = image});
    }
    [[nodiscard]] std::unique_ptr<PreviewModel> pinnedCard(const Image &image) const
    {
        return std::make_unique<PreviewModel>(
            config, PreviewModel::Options{.image = image, .variant = PreviewCardVariant::pinned});
    }

    /// No screen, so that a new card is 220 x 165.
    PreviewModelTest() { screens.setScreens({}); }

    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
};

TEST_F(PreviewModelTest, aNewCardIsIdleAtTheDefaultSize)
{
    const auto card = stackCard(picture(8, 6));

    EXPECT_EQ(card->variant(), PreviewCardVariant::stack);
    EXPECT_EQ(card->status(), PreviewModel::Status(PreviewModel::Idle{}));
    EXPECT_EQ(card->cardSize(), (Size{220, 165}));
    EXPECT_FALSE(card->deckBehind());
    EXPECT_FALSE(card->collapsed());
    EXPECT_FALSE(card->onDismiss || card->onPinRequested || card->onEditRequested || card->onSizeChanged ||
                 card->onPanDragBegan || card->onPanDragChanged || card->onPanDragEnded || card->onResizeDragBegan ||
                 card->onResizeDragChanged || card->onResizeDragEnded || card->onBringToFront ||
                 card->onExpandRequested);
}

TEST_F(PreviewModelTest, theDefaultSizeIsThatOfTheMomentOfCreation)
{
    screens.setScreens({screenOfFourCards()});
    const auto card = stackCard(picture(8, 6));
    screens.setScreens({});

    EXPECT_EQ(card->cardSize(), (Size{160, 120}));
}

TEST_F(PreviewModelTest, withoutAnIdentityACardGetsAFreshOne)
{
    const Image image = picture(8, 6);
    const auto one = stackCard(image);
    const auto other = stackCard(image);

    static const QRegularExpression canonical(u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_s);
    EXPECT_TRUE(canonical.match(one->screenshotId()).hasMatch()) << qPrintable(one->screenshotId());
    EXPECT_NE(one->screenshotId(), other->screenshotId());
    EXPECT_EQ(one->editorSourceId(), one->screenshotId());
    EXPECT_EQ(one->editorSourceImage(), image);
}

TEST_F(PreviewModelTest, aCardKeepsTheIdentityItIsGiven)
{
    const Image image = picture(8, 6);
    const Image source = picture(16, 12);
    const PreviewModel card(config, {.image = image,
                                     .editorSourceImage = source,
                                     .editorSourceId = u"source"_s,
                                     .variant = PreviewCardVariant::pinned,
                                     .id = u"card"_s});

    EXPECT_EQ(card.image(), image);
    EXPECT_EQ(card.editorSourceImage(), source);
    EXPECT_EQ(card.editorSourceId(), u"source"_s);
    EXPECT_EQ(card.variant(), PreviewCardVariant::pinned);
    EXPECT_EQ(card.screenshotId(), u"card"_s);
}

TEST_F(PreviewModelTest, anIdentityAloneIsAlsoThatOfTheEditorSource)
{
    const PreviewModel card(config, {.image = picture(8, 6), .id = u"card"_s});

    EXPECT_EQ(card.editorSourceId(), u"card"_s);
}

TEST_F(PreviewModelTest, theWidthStaysWithinTheLimits)
{
    const auto card = stackCard(picture(8, 6));

    card->setCardWidth(50);
    EXPECT_EQ(card->cardSize(), (Size{140, 105}));
    card->setCardWidth(5000);
    EXPECT_EQ(card->cardSize(), (Size{1200, 900}));
}

TEST_F(PreviewModelTest, anUnchangedWidthIsNotReported)
{
    const auto card = stackCard(picture(8, 6));
    std::vector<Size> reported;
    card->onSizeChanged = [&reported](Size size) { reported.push_back(size); };

    card->setCardWidth(5000);
    card->setCardWidth(5000);
    card->setCardWidth(1199.95);
    EXPECT_THAT(reported, ElementsAre(Size{1200, 900}));

    card->setCardWidth(1199.8);
    EXPECT_EQ(reported.size(), 2U);
}

TEST_F(PreviewModelTest, onlyAPinnedCardIsResizedInTheProportionsOfItsImage)
{
    const auto stacked = stackCard(picture(1000, 250));
    stacked->setCardWidth(400);
    EXPECT_EQ(stacked->cardSize(), (Size{400, 300}));

    const auto pinned = pinnedCard(picture(1000, 250));
    pinned->setCardWidth(400);
    EXPECT_EQ(pinned->cardSize(), (Size{400, 100}));
    EXPECT_DOUBLE_EQ(pinned->aspectRatio(), 4);
}

TEST_F(PreviewModelTest, lockingToTheImagesRatioDoublesTheWidthAndReportsNothing)
{
    const auto card = pinnedCard(picture(200, 100));
    bool isReported = false;
    card->onSizeChanged = [&isReported](Size) { isReported = true; };

    card->lockSizeToImageRatio();
    EXPECT_EQ(card->cardSize(), (Size{440, 220}));
    EXPECT_FALSE(isReported);
}

TEST_F(PreviewModelTest, lockingToTheImagesRatioStopsAtTheLargestWidth)
{
    const auto card = pinnedCard(picture(200, 100));
    card->setCardWidth(700);

    card->lockSizeToImageRatio();
    EXPECT_EQ(card->cardSize(), (Size{1200, 600}));
}

TEST_F(PreviewModelTest, lockingToTheImagesRatioKnowsNoSmallestWidth)
{
    const auto card = pinnedCard(picture(10, 10));
    card->syncCardSizeFromWindow({50, 50});

    card->lockSizeToImageRatio();
    EXPECT_EQ(card->cardSize(), (Size{100, 100}));
}

TEST_F(PreviewModelTest, aSizeFromTheWindowIsTakenAsItIs)
{
    const auto card = stackCard(picture(8, 6));
    bool isReported = false;
    card->onSizeChanged = [&isReported](Size) { isReported = true; };

    card->syncCardSizeFromWindow({30, 2000});
    EXPECT_EQ(card->cardSize(), (Size{30, 2000}));
    EXPECT_FALSE(isReported);
}

TEST_F(PreviewModelTest, roundingInTheWindowChangesNothing)
{
    const auto card = stackCard(picture(8, 6));
    int changes = 0;
    QObject::connect(card.get(), &PreviewModel::cardSizeWillChange, [&changes](Size) { ++changes; });

    card->syncCardSizeFromWindow({220.05, 164.95});
    EXPECT_EQ(card->cardSize(), (Size{220, 165}));
    EXPECT_EQ(changes, 0);

    card->syncCardSizeFromWindow({220.05, 165.2});
    EXPECT_EQ(card->cardSize(), (Size{220.05, 165.2}));
    EXPECT_EQ(changes, 1);
}

TEST_F(PreviewModelTest, observersAreToldBeforeAFieldChanges)
{
    const auto card = stackCard(picture(8, 6));
    QStringList told;
    QObject::connect(card.get(), &PreviewModel::statusWillChange, [&](const PreviewModel::Status &next) {
        told.append(u"status %1 to %2"_s.arg(card->status().index()).arg(next.index()));
    });
    QObject::connect(card.get(), &PreviewModel::cardSizeWillChange,
                     [&](Size next) { told.append(u"width %1 to %2"_s.arg(card->cardSize().width).arg(next.width)); });
    QObject::connect(card.get(), &PreviewModel::deckBehindWillChange,
                     [&](bool next) { told.append(u"behind %1 to %2"_s.arg(card->deckBehind()).arg(next)); });
    QObject::connect(card.get(), &PreviewModel::collapsedWillChange,
                     [&](bool next) { told.append(u"collapsed %1 to %2"_s.arg(card->collapsed()).arg(next)); });

    card->setStatus(PreviewModel::Uploading{});
    card->setCardWidth(300);
    card->setDeckBehind(true);
    card->setCollapsed(true);

    EXPECT_EQ(told,
              QStringList({u"status 0 to 1"_s, u"width 220 to 300"_s, u"behind 0 to 1"_s, u"collapsed 0 to 1"_s}));
    EXPECT_TRUE(card->deckBehind());
    EXPECT_TRUE(card->collapsed());
}

TEST_F(PreviewModelTest, observersAreNotToldOfWhatStaysTheSame)
{
    const auto card = stackCard(picture(8, 6));
    card->setStatus(PreviewModel::Failed{u"Upload failed"_s});
    int changes = 0;
    QObject::connect(card.get(), &PreviewModel::statusWillChange, [&changes] { ++changes; });
    QObject::connect(card.get(), &PreviewModel::deckBehindWillChange, [&changes] { ++changes; });
    QObject::connect(card.get(), &PreviewModel::collapsedWillChange, [&changes] { ++changes; });

    card->setStatus(PreviewModel::Failed{u"Upload failed"_s});
    card->setDeckBehind(false);
    card->setCollapsed(false);
    EXPECT_EQ(changes, 0);

    card->setStatus(PreviewModel::Failed{u"API key required"_s});
    EXPECT_EQ(changes, 1);
}

TEST_F(PreviewModelTest, statusesAreEqualByCaseAndContent)
{
    using Status = PreviewModel::Status;
    const QUrl link(u"https://lumenfold.example/a"_s);

    EXPECT_EQ(Status(PreviewModel::Uploaded{link}), Status(PreviewModel::Uploaded{link}));
    EXPECT_NE(Status(PreviewModel::Uploaded{link}), Status(PreviewModel::Uploaded{}));
    EXPECT_NE(Status(PreviewModel::Uploading{}), Status(PreviewModel::Idle{}));
    EXPECT_NE(Status(PreviewModel::Failed{u"a"_s}), Status(PreviewModel::Failed{u"b"_s}));
}

TEST_F(PreviewModelTest, aCallbackMayReplaceItself)
{
    const auto card = stackCard(picture(8, 6));
    std::vector<Size> reported;
    card->onSizeChanged = [&card, &reported](Size size) {
        card->onSizeChanged = nullptr;
        reported.push_back(size);
    };

    card->setCardWidth(400);
    card->setCardWidth(500);
    EXPECT_THAT(reported, ElementsAre(Size{400, 300}));
}

} // namespace
} // namespace lumenfold::test
