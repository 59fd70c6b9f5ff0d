#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CardStoreCallsTest : public CardsTest {
protected:
    static PersistedCard stacked(const QString &id, const std::optional<QString> &editorSourceId = std::nullopt)
    {
        return {.id = id, .editorSourceId = editorSourceId, .isPinned = false, .frame = std::nullopt};
    }
};

TEST_F(CardStoreCallsTest, aNewCardIsKeptWithBothItsImages)
{
    const Image image = picture(8, 6);
    const Image source = picture(16, 12);
    controller->show(image, {.editorSourceImage = source, .editorSourceId = u"source"_s, .id = u"1"_s});

    EXPECT_EQ(store.calls, QStringList({u"save 1"_s, u"save source 1"_s, u"manifest"_s}));
    EXPECT_EQ(store.images.value(u"1"_s), image);
    EXPECT_EQ(store.editorSourceImages.value(u"1"_s), source);
    EXPECT_THAT(store.manifest, ElementsAre(stacked(u"1"_s, u"source"_s)));
}

TEST_F(CardStoreCallsTest, aPinnedCardIsKeptWithItsFrame)
{
    controller->showPinnedCard(picture(8, 6), {.frame = Rect{100, 200, 404, 344}, .id = u"1"_s});

    EXPECT_EQ(store.calls, QStringList({u"save 1"_s, u"save source 1"_s, u"manifest"_s}));
    EXPECT_THAT(store.manifest,
                ElementsAre(PersistedCard{
                    .id = u"1"_s, .editorSourceId = u"1"_s, .isPinned = true, .frame = Rect{100, 200, 404, 344}}));
}

TEST_F(CardStoreCallsTest, aCardThatShallNotBeKeptWritesNothing)
{
    controller->show(picture(8, 6), {.id = u"1"_s, .persist = Persist::no});
    controller->showPinnedCard(picture(8, 6), {.id = u"2"_s, .persist = Persist::no});

    EXPECT_THAT(store.calls, IsEmpty());
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"2"_s}));
}

TEST_F(CardStoreCallsTest, aDismissedCardsImagesAreDeletedAtOnce)
{
    showCards(2);
    store.calls.clear();

    model(u"1"_s).onDismiss();
    EXPECT_EQ(store.calls, QStringList({u"delete 1"_s, u"manifest"_s}));
    EXPECT_THAT(store.manifest, ElementsAre(stacked(u"2"_s, u"2"_s)));
}

TEST_F(CardStoreCallsTest, theManifestListsTheCardsInTheirOrder)
{
    showCards(2);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    store.calls.clear();

    model(u"1"_s).onBringToFront();
    EXPECT_EQ(store.calls, QStringList({u"manifest"_s}));
    QStringList listed;
    for (const PersistedCard &entry : store.manifest) {
        listed.append(entry.id);
    }
    EXPECT_EQ(listed, QStringList({u"2"_s, u"pinned"_s, u"1"_s}));
}

TEST_F(CardStoreCallsTest, collapsingWritesNothing)
{
    showCards(2);
    store.calls.clear();

    controller->toggleCollapse();
    controller->toggleCollapse();
    controller->setHiddenForCapture(true);
    controller->setHiddenForCapture(false);
    EXPECT_THAT(store.calls, IsEmpty());
}

TEST_F(CardStoreCallsTest, theLastRunsCardsComeBack)
{
    const Image a = picture(8, 6);
    const Image b = picture(10, 10);
    const Image source = picture(16, 12);
    store.images = {{u"A"_s, a}, {u"B"_s, b}};
    store.editorSourceImages = {{u"B"_s, source}};
    store.manifest = {stacked(u"A"_s), PersistedCard{.id = u"B"_s,
                                                     .editorSourceId = u"source"_s,
                                                     .isPinned = true,
                                                     .frame = Rect{100, 200, 404, 344}}};

    controller->restore();
    settle();
    ASSERT_EQ(ids(), QStringList({u"A"_s, u"B"_s}));
    EXPECT_EQ(card(u"A"_s)->variant, PreviewCardVariant::stack);
    EXPECT_EQ(model(u"A"_s).image(), a);
    EXPECT_EQ(model(u"A"_s).editorSourceImage(), a);
    EXPECT_EQ(model(u"A"_s).editorSourceId(), u"A"_s);
    EXPECT_THAT(panel(u"A"_s).frame(), RectNear(slotFrame(0)));
    EXPECT_EQ(panel(u"A"_s).alpha(), 1);
    EXPECT_EQ(card(u"B"_s)->variant, PreviewCardVariant::pinned);
    EXPECT_EQ(model(u"B"_s).editorSourceImage(), source);
    EXPECT_EQ(model(u"B"_s).editorSourceId(), u"source"_s);
    EXPECT_EQ(panel(u"B"_s).frame(), (Rect{100, 200, 404, 344}));
    EXPECT_EQ(stacking(), QStringList({u"A"_s, u"B"_s}));
}

TEST_F(CardStoreCallsTest, restoringSavesNoImageAgain)
{
    store.images = {{u"A"_s, picture(8, 6)}};
    store.manifest = {stacked(u"A"_s)};

    controller->restore();
    EXPECT_EQ(store.calls, QStringList({u"manifest"_s}));
}

TEST_F(CardStoreCallsTest, anEntryWhoseImageIsGoneIsDroppedFromTheManifest)
{
    store.images = {{u"B"_s, picture(8, 6)}};
    store.manifest = {stacked(u"A"_s), stacked(u"B"_s)};

    controller->restore();
    EXPECT_EQ(ids(), QStringList({u"B"_s}));
    EXPECT_THAT(store.manifest, ElementsAre(stacked(u"B"_s, u"B"_s)));
}

TEST_F(CardStoreCallsTest, anEmptyStoreRestoresNothing)
{
    controller->restore();
    EXPECT_THAT(panels.panels(), IsEmpty());
    EXPECT_EQ(store.calls, QStringList({u"manifest"_s}));
}

TEST_F(CardStoreCallsTest, manyCardsAreRestoredWithoutShowingTheCoveredOnes)
{
    for (int number = 1; number <= 50; ++number) {
        const QString id = QString::number(number);
        store.images.insert(id, picture(8, 6));
        store.manifest.push_back(stacked(id));
    }

    controller->restore();
    settle();
    EXPECT_EQ(stacking(), QStringList({u"45"_s, u"46"_s, u"47"_s, u"48"_s, u"49"_s, u"50"_s}));
    for (const CardPointer &each : controller->stackCards()) {
        const bool isSeen = stacking().contains(each->model->screenshotId());
        // Once more for each card that came beneath it.
        EXPECT_LE(panelOf(each).orderFrontCount(), isSeen ? 7 : 0) << qPrintable(each->model->screenshotId());
    }
}

TEST_F(CardStoreCallsTest, pinnedCardsStandAmongTheOthersAsTheyCame)
{
    for (const QString &id : {u"A"_s, u"B"_s, u"C"_s}) {
        store.images.insert(id, picture(8, 6));
    }
    const auto pinned = [](const QString &id) { return PersistedCard{.id = id, .isPinned = true}; };
    store.manifest = {pinned(u"A"_s), stacked(u"B"_s), pinned(u"C"_s)};

    controller->restore();
    settle();
    EXPECT_EQ(stacking(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
}

} // namespace
} // namespace lumenfold::test
