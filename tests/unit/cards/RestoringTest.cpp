/// Many cards of the last run come back: the ones that are seen at once, the others little by little.
#include "tests/unit/cards/CardsFixture.h"

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::SizeIs;

class RestoringTest : public CardsTest {
protected:
    /// Stack cards "1" to "50", and pinned cards "p10", "p20", ..., each behind the stack card of that number.
    RestoringTest()
    {
        for (int number = 1; number <= 50; ++number) {
            add(QString::number(number), false);
            if (number % 10 == 0) {
                add(u'p' + QString::number(number), true);
            }
        }
    }

    void add(const QString &id, bool isPinned)
    {
        store.images.insert(id, picture(8, 6));
        store.manifest.push_back({.id = id,
                                  .editorSourceId = id,
                                  .isPinned = isPinned,
                                  .frame = isPinned ? std::optional(Rect{300, 300, 304, 204}) : std::nullopt});
        listed.append(id);
    }

    [[nodiscard]] QStringList idsInManifest() const
    {
        QStringList all;
        std::ranges::transform(store.manifest, std::back_inserter(all), &PersistedCard::id);
        return all;
    }

    /// A few turns of the event loop, not enough for all.
    void passSomeTurns() { queue.advance(340ms); }

    QStringList listed;
};

TEST_F(RestoringTest, onlyWhatIsSeenOfTheColumnComesAtOnce)
{
    controller->restore();
    EXPECT_EQ(ids(), QStringList({u"44"_s, u"45"_s, u"46"_s, u"47"_s, u"48"_s, u"49"_s, u"50"_s}));
    EXPECT_THAT(panels.panels(), SizeIs(7));
    queue.advance(5ms);
    EXPECT_GT(controller->cards().size(), 7);
    EXPECT_LE(controller->cards().size(), 11);
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
    controller->restore();
    queue.advance(0ms);
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

TEST_F(RestoringTest, aListThatIsWrittenMeanwhileNamesThoseThatAreStillToCome)
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

TEST_F(RestoringTest, cardsThatGoMeanwhileLeaveTheOthersInTheirOrder)
{
    controller->restore();
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

TEST_F(RestoringTest, theColumnWorksAlsoWhenAllThatWereSeenWentMeanwhile)
{
    controller->restore();
    while (!controller->stackCards().empty()) {
        controller->stackCards().back()->model->onDismiss();
    }
    EXPECT_THAT(monitors.globalMasks(), SizeIs(0));
    settle();
    EXPECT_THAT(controller->stackCards(), SizeIs(43));
    EXPECT_THAT(monitors.globalMasks(), SizeIs(1));
}

TEST_F(RestoringTest, clearingTheColumnTakesAlsoWhatIsStillToCome)
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

TEST_F(RestoringTest, theOthersCloseUpWhenThoseToComeCannotBeRead)
{
    store.manifest.resize(12);
    const QStringList expected = {u"10"_s, u"p10"_s, u"11"_s};
    controller->restore();
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

TEST_F(RestoringTest, aCaptureMeanwhileHidesThoseThatComeDuringIt)
{
    controller->restore();
    controller->setHiddenForCapture(true);
    settle();
    EXPECT_EQ(stacking(), QStringList());
    EXPECT_EQ(ids(), listed);
    controller->setHiddenForCapture(false);
    EXPECT_THAT(stacking(), SizeIs(6 + 5));
}

TEST_F(RestoringTest, itEndsWithTheController)
{
    controller->restore();
    controller.reset();
    queue.advance(1s);
    EXPECT_THAT(store.calls, SizeIs(0));
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
