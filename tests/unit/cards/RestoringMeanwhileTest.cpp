/// What happens while the cards of the last run come back finds them all, those included that are still to come.
#include "tests/unit/cards/RestoringFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using RestoringMeanwhileTest = RestoringFixture;

TEST_F(RestoringMeanwhileTest, aListThatIsWrittenMeanwhileNamesThoseThatAreStillToCome)
{
    const std::vector<PersistedCard> before = store.manifest;
    controller->restore();
    passSomeTurns();
    controller->persistManifest();
    EXPECT_EQ(store.manifest, before);
    controller->show(picture(8, 6), {.id = u"new"_s});
    listed.append(u"new"_s);
    EXPECT_EQ(idsInManifest(), listed);
    model(u"p10"_s).onDismiss();
    listed.removeAll(u"p10"_s);
    EXPECT_EQ(idsInManifest(), listed);
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(idsInManifest(), listed);
}

TEST_F(RestoringMeanwhileTest, cardsThatGoMeanwhileLeaveTheOthersInTheirOrder)
{
    restoreColumn();
    for (const QString &id : {u"47"_s, u"44"_s, u"50"_s}) {
        model(id).onDismiss();
        listed.removeAll(id);
        queue.advance(1ms);
    }
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(ids(), listed + QStringList(u"50"_s));
}

TEST_F(RestoringMeanwhileTest, theColumnWorksAlsoWhenAllThatWereSeenWentMeanwhile)
{
    restoreColumn();
    std::size_t left = 50;
    while (!controller->stackCards().empty()) {
        controller->stackCards().back()->model->onDismiss();
        --left;
    }
    EXPECT_THAT(monitors.globalMasks(), SizeIs(0));
    settle();
    EXPECT_THAT(controller->stackCards(), SizeIs(left));
    EXPECT_THAT(monitors.globalMasks(), SizeIs(1));
}

TEST_F(RestoringMeanwhileTest, clearingTheColumnTakesAlsoWhatIsStillToCome)
{
    controller->restore();
    passSomeTurns();
    controller->clearAll();
    settle();
    EXPECT_EQ(ids(), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}));
    EXPECT_EQ(idsInManifest(), ids());
    EXPECT_FALSE(store.images.contains(u"1"_s));

    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_THAT(controller->stackCards(), SizeIs(50));
    EXPECT_EQ(controller->stackCards().front()->model->screenshotId(), u"1"_s);
    EXPECT_TRUE(store.images.contains(u"1"_s));
}

TEST_F(RestoringMeanwhileTest, aCaptureMeanwhileHidesThoseThatComeDuringIt)
{
    controller->restore();
    controller->setHiddenForCapture(true);
    settle();
    EXPECT_EQ(stacking(), QStringList());
    EXPECT_EQ(ids(), listed);
    controller->setHiddenForCapture(false);
    EXPECT_THAT(stacking(), SizeIs(6 + 5));
}

TEST_F(RestoringMeanwhileTest, aCaptureBeforeAllAreSeenIsTheNewest)
{
    controller->restore();
    passTurn();
    controller->show(picture(8, 6), {.id = u"new"_s});
    EXPECT_EQ(idsInManifest(), listed + QStringList(u"new"_s));
    EXPECT_THAT(panel(u"new"_s).frame(), RectNear(aboveDeckFrame(2)));
    settle();
    EXPECT_EQ(ids(), listed + QStringList(u"new"_s));
    const QStringList pinned = {u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s};
    EXPECT_EQ(stacking(), pinned + numbers(46, 50) + QStringList(u"new"_s));
    EXPECT_THAT(panel(u"50"_s).frame(), RectNear(aboveDeckFrame(1)));
    EXPECT_THAT(panel(u"48"_s).frame(), RectNear(deckFrame(0)));
    EXPECT_EQ(idsInManifest(), ids());
}

TEST_F(RestoringMeanwhileTest, aCardPinnedBeforeAllAreSeenStaysInFrontOfThem)
{
    controller->restore();
    model(u"50"_s).onPinRequested();
    const QString pinned = controller->cards().back()->model->screenshotId();
    for (int turn = 0; turn < 10; ++turn) {
        EXPECT_EQ(stacking().back(), pinned);
        passTurn();
    }
    settle();
    EXPECT_EQ(stacking().back(), pinned);
    EXPECT_EQ(stacking().at(stacking().size() - 2), u"p50"_s);
    EXPECT_EQ(ids(), listed + QStringList(pinned));
    EXPECT_EQ(idsInManifest(), ids());
}

TEST_F(RestoringMeanwhileTest, cardsDismissedBeforeAllAreSeenMakeRoomForOlderOnes)
{
    beginRestoring();
    for (const QString &id : {u"50"_s, u"49"_s}) {
        model(id).onDismiss();
        listed.removeAll(id);
        EXPECT_EQ(idsInManifest(), listed);
        EXPECT_FALSE(store.images.contains(id));
    }
    EXPECT_THAT(controller->stackCards(), IsEmpty());
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(stacking(),
              QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s}) + numbers(43, 48) + QStringList(u"p50"_s));
    EXPECT_THAT(panel(u"48"_s).frame(), RectNear(aboveDeckFrame(2)));
    EXPECT_THAT(monitors.globalMasks(), SizeIs(1));

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_EQ(ids(), listed + QStringList({u"49"_s, u"50"_s}));
    EXPECT_EQ(idsInManifest(), ids());
}

TEST_F(RestoringMeanwhileTest, aDismissalUndoneBeforeAllAreSeenBringsTheCardBackAsTheNewest)
{
    beginRestoring();
    model(u"49"_s).onDismiss();
    passTurn();
    EXPECT_TRUE(controller->restoreLastDismissed());
    listed.removeAll(u"49"_s);
    listed.append(u"49"_s);
    EXPECT_EQ(idsInManifest(), listed);
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(stacking().last(6), QStringList({u"45"_s, u"46"_s, u"47"_s, u"48"_s, u"50"_s, u"49"_s}));
    EXPECT_TRUE(store.images.contains(u"49"_s));
}

TEST_F(RestoringMeanwhileTest, clearingBeforeAllAreSeenTakesTheWholeColumnAndIsUndone)
{
    controller->restore();
    passTurn();
    controller->clearAll();
    EXPECT_EQ(idsInManifest(), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}));
    EXPECT_EQ(store.images.size(), 5);
    EXPECT_TRUE(controller->restoreLastDismissed());
    // The pinned ones are still to come.
    EXPECT_EQ(idsInManifest(), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}) + numbers(1, 50));
    settle();
    EXPECT_EQ(ids(), idsInManifest());
    EXPECT_EQ(stacking(), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}) + numbers(45, 50));
    EXPECT_EQ(store.images.size(), 55);
}

TEST_F(RestoringMeanwhileTest, collapsingBeforeAllAreSeenCollapsesThoseToCome)
{
    controller->restore();
    controller->toggleCollapse();
    settle();
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_EQ(ids(), listed);
    EXPECT_THAT(panel(u"50"_s).frame(), RectNear(peekingFrame(0)));
    EXPECT_THAT(panel(u"47"_s).frame(), RectNear(peekingFrame(3)));
    EXPECT_TRUE(model(u"48"_s).collapsed());
}

TEST_F(RestoringMeanwhileTest, screensThatChangeBeforeAllAreSeenPlaceThemAll)
{
    controller->restore();
    passTurn();
    // There is room for two cards now.
    screens.setScreens({{.displayID = 1, .frame = {0, 0, 1300, 400}, .visibleFrame = {100, 50, 1000, 314}}});
    settle();
    EXPECT_EQ(ids(), listed);
    const std::vector<Rect> frames = columnFrames();

    // As if they had stood there from the beginning.
    controller.reset();
    makeController();
    controller->restore();
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(columnFrames(), frames);
}

TEST_F(RestoringMeanwhileTest, screensThatAreMissingAtFirstAreWaitedFor)
{
    screens.setScreens({});
    controller->restore();
    passTurn();
    screens.setScreens({screenOfFourCards()});
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(stacking().filter(u"p"_s), QStringList({u"p10"_s, u"p20"_s, u"p30"_s, u"p40"_s, u"p50"_s}));
    EXPECT_THAT(panel(u"50"_s).frame(), RectNear(aboveDeckFrame(2)));
    EXPECT_THAT(panel(u"46"_s).frame(), RectNear(deckFrame(1)));
    EXPECT_TRUE(panel(u"46"_s).isVisible());
}

TEST_F(RestoringMeanwhileTest, aPictureOfTheScreenBeforeAllAreSeenHidesThemAll)
{
    controller->restore();
    controller->setHiddenForCapture(true);
    passTurn();
    passTurn();
    EXPECT_THAT(stacking(), IsEmpty());
    controller->setHiddenForCapture(false);
    settle();
    for (const QString &id : numbers(45, 50)) {
        EXPECT_TRUE(panel(id).isVisible()) << qPrintable(id);
        EXPECT_EQ(panel(id).alpha(), 1) << qPrintable(id);
    }
    EXPECT_EQ(ids(), listed);
}

TEST_F(RestoringMeanwhileTest, nothingIsLostWhenTheProgramEndsBeforeAllAreSeen)
{
    const std::vector<PersistedCard> before = store.manifest;
    controller->restore();
    passTurn();
    // On the way out.
    controller->persistManifest();
    controller.reset();
    settle();
    EXPECT_EQ(store.manifest, before);
    EXPECT_EQ(store.images.size(), 55);

    makeController();
    controller->restore();
    settle();
    EXPECT_EQ(ids(), listed);
    EXPECT_EQ(store.manifest, before);
}

TEST_F(RestoringMeanwhileTest, itEndsWithTheController)
{
    controller->restore();
    controller.reset();
    queue.advance(1s);
    EXPECT_THAT(store.calls, SizeIs(0));
}

} // namespace
} // namespace lumenfold::test
