/// Many cards of the last run come back a few at a time: first the ones that are seen, then the others.
#include "tests/unit/cards/RestoringFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::SizeIs;

using RestoringTest = RestoringFixture;

TEST_F(RestoringTest, whatIsSeenComesOneAfterTheOtherFromTheNewestOn)
{
    controller->restore();
    EXPECT_EQ(ids(), QStringList(u"50"_s));
    EXPECT_THAT(panels.panels(), SizeIs(1));
    for (const int oldest : {49, 48, 47, 46, 45, 44}) {
        passTurn();
        EXPECT_EQ(ids(), numbers(oldest, 50));
        EXPECT_THAT(panels.panels(), SizeIs(51 - oldest));
    }
    EXPECT_EQ(stacking(), numbers(45, 50));
    // Then the pinned ones, and nothing of what is not seen before all of that has faded in.
    for (const QString &pinned : {u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}) {
        EXPECT_EQ(card(pinned), nullptr);
        passTurn();
        EXPECT_NE(card(pinned), nullptr);
    }
    queue.advance(290ms);
    EXPECT_THAT(panels.panels(), SizeIs(12));
    EXPECT_EQ(panel(u"45"_s).alpha(), 1);
    queue.advance(10ms);
    EXPECT_GT(panels.panels().size(), 12);
    EXPECT_LE(panels.panels().size(), 16);
}

TEST_F(RestoringTest, everyCardStandsInItsPlaceFromTheBeginning)
{
    beginRestoring();
    EXPECT_THAT(panel(u"50"_s).frame(), RectNear(aboveDeckFrame(2)));
    EXPECT_THAT(panel(u"49"_s).frame(), RectNear(aboveDeckFrame(1)));
    EXPECT_FALSE(model(u"49"_s).deckBehind());
    passTurn();
    passTurn();
    EXPECT_THAT(panel(u"48"_s).frame(), RectNear(aboveDeckFrame(0)));
    EXPECT_THAT(panel(u"47"_s).frame(), RectNear(deckFrame(0)));
    passTurn();
    passTurn();
    EXPECT_THAT(panel(u"46"_s).frame(), RectNear(deckFrame(1)));
    EXPECT_THAT(panel(u"45"_s).frame(), RectNear(deckFrame(2)));
    EXPECT_TRUE(model(u"45"_s).deckBehind());
    settle();
    for (const QString &id : numbers(45, 50)) {
        EXPECT_EQ(panel(id).alpha(), 1) << qPrintable(id);
        for (const PanelAnimation &animation : panel(id).animations()) {
            EXPECT_FALSE(animation.frame) << qPrintable(id);
        }
    }
}

TEST_F(RestoringTest, whatIsSeenKnowsFromTheBeginningWhichOfThemCannotBeRead)
{
    store.manifest.resize(4);
    store.images.remove(u"1"_s);
    store.images.remove(u"3"_s);
    controller->restore();
    EXPECT_THAT(panel(u"4"_s).frame(), RectNear(slotFrame(1)));
    settle();
    EXPECT_THAT(panel(u"2"_s).frame(), RectNear(slotFrame(0)));
    EXPECT_THAT(panel(u"4"_s).frame(), RectNear(slotFrame(1)));
    EXPECT_EQ(ids(), QStringList({u"2"_s, u"4"_s}));
    EXPECT_EQ(idsInManifest(), ids());
}

TEST_F(RestoringTest, allComeBackInTheirOrder)
{
    controller->restore();
    settle();
    EXPECT_EQ(ids(), listed);
    const QStringList column = {u"45"_s, u"46"_s, u"47"_s, u"48"_s, u"49"_s, u"50"_s};
    EXPECT_EQ(stacking(), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s}) + column + QStringList(u"p50"_s));
    EXPECT_EQ(panel(u"p30"_s).frame(), (Rect{300, 300, 304, 204}));
    EXPECT_THAT(panel(u"50"_s).frame(), RectNear(aboveDeckFrame(2)));
}

TEST_F(RestoringTest, theOnesThatAreSeenDoNotMoveForTheOthers)
{
    restoreColumn();
    const Rect newest = panel(u"50"_s).frame();
    const Rect front = panel(u"47"_s).frame();
    for (int turn = 0; turn < 20; ++turn) {
        queue.advance(20ms);
        EXPECT_EQ(panel(u"50"_s).frame(), newest);
        EXPECT_EQ(panel(u"47"_s).frame(), front);
    }
}

TEST_F(RestoringTest, theListIsWrittenOnceAndWhenItIsKnown)
{
    store.images.remove(u"3"_s);
    store.images.remove(u"p20"_s);
    store.images.remove(u"50"_s);
    controller->restore();
    passSomeTurns();
    EXPECT_THAT(store.calls, SizeIs(0));
    settle();
    EXPECT_EQ(store.calls, QStringList(u"manifest"_s));
    for (const QString &gone : {u"3"_s, u"p20"_s, u"50"_s}) {
        listed.removeAll(gone);
    }
    EXPECT_EQ(idsInManifest(), listed);
    EXPECT_EQ(ids(), listed);
}

TEST_F(RestoringTest, theOthersCloseUpWhenThoseToComeCannotBeRead)
{
    store.manifest.resize(12);
    const QStringList expected = {u"10"_s, u"p10"_s, u"11"_s};
    controller->restore();
    queue.advance(100ms);
    for (int number = 5; number <= 9; ++number) {
        model(QString::number(number)).onDismiss();
    }
    for (int number = 1; number <= 4; ++number) {
        store.images.remove(QString::number(number));
    }
    settle();
    EXPECT_EQ(ids(), expected);
    EXPECT_THAT(panel(u"10"_s).frame(), RectNear(slotFrame(0)));
    EXPECT_THAT(panel(u"11"_s).frame(), RectNear(slotFrame(1)));
}

TEST_F(RestoringTest, aCardWhosePictureTurnsOutToBeBrokenGoesForGood)
{
    controller->restore();
    settle();
    store.calls.clear();
    model(u"48"_s).onImageUnreadable();
    listed.removeAll(u"48"_s);
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(store.calls, QStringList({u"delete 48"_s, u"manifest"_s}));
    EXPECT_FALSE(controller->restoreLastDismissed());
}

} // namespace
} // namespace lumenfold::test
