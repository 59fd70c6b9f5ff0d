/// A removal of many cards is undone a few cards at a time, and everything may happen in between.
#include "tests/unit/cards/CardsFixture.h"

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

QStringList numbers(int first, int last)
{
    QStringList result;
    for (int number = first; number <= last; ++number) {
        result.append(QString::number(number));
    }
    return result;
}

/// Thirty cards were cleared, and the first two of them are back.
class UndoInSlicesTest : public CardsTest {
protected:
    void SetUp() override
    {
        showCards(30);
        controller->clearAll();
        settle();
        ASSERT_THAT(panels.panels(), IsEmpty());
        store.calls.clear();
        ASSERT_TRUE(controller->restoreLastDismissed());
        ASSERT_EQ(ids(), numbers(30, 30));
        passTurn();
        ASSERT_EQ(ids(), numbers(29, 30));
    }

    /// What the next run of the program would be told.
    [[nodiscard]] QStringList listed() const
    {
        QStringList all;
        std::ranges::transform(store.manifest, std::back_inserter(all), &PersistedCard::id);
        return all;
    }

    /// The next card.
    void passTurn() { queue.advance(8ms); }
};

TEST_F(UndoInSlicesTest, whatWillBeSeenComesOneAfterTheOtherFromTheNewestOn)
{
    for (const int oldest : {28, 27, 26, 25, 24}) {
        passTurn();
        EXPECT_EQ(ids(), numbers(oldest, 30));
        EXPECT_THAT(panels.panels(), SizeIs(31 - oldest));
    }
    // The others wait until these have faded in.
    queue.advance(290ms);
    EXPECT_EQ(ids(), numbers(24, 30));
    EXPECT_EQ(panel(u"30"_s).alpha(), 1);
    settle();
    EXPECT_EQ(ids(), numbers(1, 30));
    EXPECT_EQ(stacking().last(6), numbers(25, 30));
}

TEST_F(UndoInSlicesTest, everyCardStandsInItsPlaceFromTheBeginning)
{
    EXPECT_THAT(panel(u"30"_s).frame(), RectNear(aboveDeckFrame(2)));
    EXPECT_THAT(panel(u"29"_s).frame(), RectNear(aboveDeckFrame(1)));
    EXPECT_FALSE(model(u"29"_s).deckBehind());
    passTurn();
    passTurn();
    EXPECT_THAT(panel(u"28"_s).frame(), RectNear(aboveDeckFrame(0)));
    EXPECT_THAT(panel(u"27"_s).frame(), RectNear(deckFrame(0)));
    passTurn();
    passTurn();
    EXPECT_THAT(panel(u"26"_s).frame(), RectNear(deckFrame(1)));
    EXPECT_THAT(panel(u"25"_s).frame(), RectNear(deckFrame(2)));
    EXPECT_TRUE(model(u"25"_s).deckBehind());
    EXPECT_EQ(stacking(), numbers(25, 30));
    settle();
    for (const QString &id : numbers(25, 30)) {
        for (const PanelAnimation &animation : panel(id).animations()) {
            EXPECT_FALSE(animation.frame) << qPrintable(id);
        }
    }
}

TEST_F(UndoInSlicesTest, thePillsStandBesideTheWholeColumnFromTheBeginning)
{
    views.offersPills = true;
    makeController();
    showCards(30);
    controller->clearAll();
    settle();
    controller->restoreLastDismissed();
    movePointerTo({200, 130});
    std::vector<Rect> early;
    std::vector<Rect> late;
    const auto pillFrames = [this](std::vector<Rect> &frames) {
        for (const FakePanel *each : panels.panels()) {
            if (each->options().title != u"Screenshot"_s) {
                frames.push_back(each->frame());
            }
        }
    };
    pillFrames(early);
    settle();
    pillFrames(late);
    EXPECT_THAT(early, SizeIs(2));
    EXPECT_EQ(early, late);
}

TEST_F(UndoInSlicesTest, aCaptureInBetweenIsTheNewest)
{
    passTurn();
    controller->show(picture(8, 6), {.id = u"new"_s});
    EXPECT_EQ(ids(), numbers(28, 30) << u"new"_s);
    EXPECT_EQ(listed(), numbers(1, 30) << u"new"_s);
    EXPECT_THAT(panel(u"new"_s).frame(), RectNear(aboveDeckFrame(2)));
    settle();
    EXPECT_EQ(ids(), numbers(1, 30) << u"new"_s);
    EXPECT_EQ(stacking().last(6), numbers(26, 30) << u"new"_s);
    EXPECT_THAT(panel(u"30"_s).frame(), RectNear(aboveDeckFrame(1)));
    EXPECT_THAT(panel(u"28"_s).frame(), RectNear(deckFrame(0)));
}

TEST_F(UndoInSlicesTest, aCardDismissedInBetweenLeavesTheOthersAsTheyWere)
{
    model(u"30"_s).onDismiss();
    EXPECT_EQ(listed(), numbers(1, 29));
    EXPECT_FALSE(store.images.contains(u"30"_s));
    settle();
    EXPECT_EQ(ids(), numbers(1, 29));
    EXPECT_THAT(panel(u"29"_s).frame(), RectNear(aboveDeckFrame(2)));
    EXPECT_EQ(stacking().last(6), numbers(24, 29));

    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_EQ(ids(), numbers(1, 30));
}

TEST_F(UndoInSlicesTest, allThatWereThereMayBeDismissedInBetween)
{
    model(u"30"_s).onDismiss();
    model(u"29"_s).onDismiss();
    EXPECT_EQ(listed(), numbers(1, 28));
    settle();
    EXPECT_EQ(ids(), numbers(1, 28));
    EXPECT_THAT(monitors.globalMasks(), SizeIs(1));
    EXPECT_EQ(stacking().last(6), numbers(23, 28));
}

TEST_F(UndoInSlicesTest, clearingInBetweenTakesWhatIsThereAndWhatIsToCome)
{
    passTurn();
    controller->clearAll();
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(store.images.keys(), IsEmpty());
    settle();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_THAT(panels.panels(), IsEmpty());
    EXPECT_EQ(queue.pendingCount(), 1U) << "something besides the end of the undo window waits";

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(listed(), numbers(1, 30));
    settle();
    EXPECT_EQ(ids(), numbers(1, 30));
    EXPECT_EQ(store.images.size(), 30);
}

TEST_F(UndoInSlicesTest, clearingIsUndoneAgainBeforeAnythingElseHappened)
{
    controller->clearAll();
    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(listed(), numbers(1, 30));
    settle();
    EXPECT_EQ(ids(), numbers(1, 30));
    EXPECT_EQ(stacking().last(6), numbers(25, 30));
}

TEST_F(UndoInSlicesTest, clearingCountsTheCardsThatAreToCome)
{
    model(u"30"_s).onDismiss();
    model(u"29"_s).onDismiss();
    ASSERT_THAT(controller->stackCards(), IsEmpty());
    controller->clearAll();
    settle();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_EQ(ids(), numbers(1, 28));
}

TEST_F(UndoInSlicesTest, collapsingInBetweenCollapsesThoseToCome)
{
    controller->toggleCollapse();
    settle();
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_EQ(ids(), numbers(1, 30));
    EXPECT_THAT(panel(u"30"_s).frame(), RectNear(peekingFrame(0)));
    EXPECT_THAT(panel(u"27"_s).frame(), RectNear(peekingFrame(3)));
    EXPECT_EQ(stacking().last(4), numbers(27, 30));
    EXPECT_TRUE(model(u"28"_s).collapsed());
}

TEST_F(UndoInSlicesTest, aCardBroughtToTheFrontInBetweenStaysInFront)
{
    controller->bringToFront(card(u"29"_s));
    const QStringList order = numbers(1, 28) + QStringList({u"30"_s, u"29"_s});
    EXPECT_EQ(listed(), order);
    settle();
    EXPECT_EQ(ids(), order);
    EXPECT_THAT(panel(u"29"_s).frame(), RectNear(aboveDeckFrame(2)));
}

TEST_F(UndoInSlicesTest, aPictureOfTheScreenInBetweenHidesThoseToCome)
{
    controller->setHiddenForCapture(true);
    queue.advance(100ms);
    EXPECT_THAT(stacking(), IsEmpty());
    controller->setHiddenForCapture(false);
    settle();
    EXPECT_EQ(stacking().last(6), numbers(25, 30));
    for (const QString &id : numbers(25, 30)) {
        EXPECT_EQ(panel(id).alpha(), 1) << qPrintable(id);
    }
}

TEST_F(UndoInSlicesTest, nothingIsLostWhenTheProgramEndsInBetween)
{
    // The pictures are all there before the first card is, and the list names all cards from then on.
    EXPECT_EQ(store.images.size(), 30);
    EXPECT_EQ(store.calls.last(), u"manifest"_s);
    EXPECT_EQ(listed(), numbers(1, 30));
    passTurn();
    // Said once more on the way out.
    controller->persistManifest();
    controller.reset();
    settle();
    EXPECT_EQ(listed(), numbers(1, 30));

    makeController();
    controller->restore();
    settle();
    EXPECT_EQ(ids(), numbers(1, 30));
}

} // namespace
} // namespace lumenfold::test
