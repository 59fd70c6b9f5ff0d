/// All cards of the column that leave and come back in one step.
#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Optional;

class ClearAllTest : public CardsTest {
protected:
    ClearAllTest()
    {
        controller->onUndoAvailabilityChanged = [this](bool available) { m_told.push_back(available); };
    }

    void pressClear() { controller->controlState().pressClear(); }

    static QStringList numbers(int first, int last)
    {
        QStringList result;
        for (int number = first; number <= last; ++number) {
            result.append(QString::number(number));
        }
        return result;
    }

    [[nodiscard]] QStringList listed() const
    {
        QStringList result;
        for (const PersistedCard &entry : store.manifest) {
            result.append(entry.id);
        }
        return result;
    }

    std::vector<bool> m_told;
};

TEST_F(ClearAllTest, oneCardIsNotCleared)
{
    pressClear();
    showCards(1);
    pressClear();
    EXPECT_EQ(ids(), QStringList(u"1"_s));
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(ClearAllTest, allCardsOfTheColumnFadeAway)
{
    showCards(3);
    std::vector<FakePanel *> leaving{&panel(u"1"_s), &panel(u"2"_s), &panel(u"3"_s)};
    for (FakePanel *each : leaving) {
        each->forgetHistory();
    }
    store.calls.clear();

    pressClear();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_THAT(m_told, ElementsAre(true));
    EXPECT_EQ(store.calls, QStringList({u"delete 1"_s, u"delete 2"_s, u"delete 3"_s, u"manifest"_s}));
    EXPECT_THAT(store.manifest, IsEmpty());
    for (const FakePanel *each : leaving) {
        EXPECT_THAT(each->animations(), ElementsAre(AllOf(Field(&PanelAnimation::alpha, Optional(0.0)),
                                                          Field(&PanelAnimation::frame, std::nullopt),
                                                          Field(&PanelAnimation::duration, 140ms))));
    }
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
    queue.advance(139ms);
    EXPECT_TRUE(leaving.front()->isVisible());
    settle();
    EXPECT_THAT(panels.panels(), IsEmpty());
}

TEST_F(ClearAllTest, pinnedCardsStay)
{
    showCards(2);
    controller->showPinnedCard(picture(8, 6), {.frame = Rect{300, 200, 304, 204}, .id = u"pinned"_s});

    pressClear();
    settle();
    EXPECT_EQ(ids(), QStringList(u"pinned"_s));
    EXPECT_EQ(listed(), QStringList(u"pinned"_s));
    EXPECT_EQ(stacking(), QStringList(u"pinned"_s));
}

TEST_F(ClearAllTest, undoingBringsAllBackInTheirOrderAsOneStep)
{
    showCards(3);
    pressClear();
    settle();
    store.calls.clear();

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(store.images.keys(), numbers(1, 3));
    EXPECT_EQ(listed(), numbers(1, 3));
    EXPECT_EQ(store.calls.count(u"manifest"_s), 1);
    EXPECT_THAT(m_told, ElementsAre(true, false));
    settle();
    EXPECT_EQ(ids(), numbers(1, 3));
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_EQ(stacking(), numbers(1, 3));
    EXPECT_FALSE(controller->restoreLastDismissed());
}

TEST_F(ClearAllTest, aCollapsedColumnIsClearedAndComesBackExpanded)
{
    showCards(3);
    controller->toggleCollapse();
    settle();

    pressClear();
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_FALSE(controller->controlState().isCollapsed());
    controller->restoreLastDismissed();
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
}

TEST_F(ClearAllTest, ofManyCardsTheNewestComeBackAtOnceAndTheOthersSoon)
{
    showCards(200);
    pressClear();
    settle();
    EXPECT_THAT(panels.panels(), IsEmpty());

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(ids(), numbers(200, 200));
    queue.advance(8ms);
    EXPECT_EQ(ids(), numbers(199, 200));
    // Nothing is lost if the program ends now.
    EXPECT_EQ(listed(), numbers(1, 200));
    EXPECT_EQ(store.images.size(), 200);
    const std::vector<Rect> frames = columnFrames();
    settle();
    EXPECT_EQ(ids(), numbers(1, 200));
    EXPECT_EQ(stacking().last(3), numbers(198, 200));
    // What was on screen stands where it stood.
    const std::vector<Rect> now = columnFrames();
    EXPECT_TRUE(std::equal(frames.begin(), frames.end(), now.end() - 2));
    EXPECT_EQ(panel(u"1"_s).alpha(), 1);
}

TEST_F(ClearAllTest, noTurnOfTheEventLoopMakesOrDropsManyPanels)
{
    showCards(200);
    pressClear();
    queue.advance(140ms);
    EXPECT_FALSE(panels.panels().size() > 200);
    settle();
    controller->restoreLastDismissed();
    std::size_t before = panels.panels().size();
    for (int turn = 0; turn < 600; ++turn) {
        queue.advance(1ms);
        EXPECT_LE(panels.panels().size() - before, 4U);
        before = panels.panels().size();
    }
    EXPECT_EQ(before, 200U);

    pressClear();
    queue.advance(0ms);
    for (int turn = 0; turn < 20; ++turn) {
        const std::size_t left = panels.panels().size();
        queue.advance(1ms);
        EXPECT_LE(left - panels.panels().size(), 8U);
    }
}

TEST_F(ClearAllTest, aCaptureInBetweenStandsAfterTheCardsThatComeBack)
{
    showCards(100);
    pressClear();
    settle();
    controller->restoreLastDismissed();

    controller->show(picture(8, 6), {.id = u"new"_s});
    EXPECT_EQ(listed(), numbers(1, 100) << u"new"_s);
    settle();
    EXPECT_EQ(ids(), numbers(1, 100) << u"new"_s);
}

TEST_F(ClearAllTest, aDismissalInBetweenTakesThatCardAlone)
{
    showCards(50);
    controller->showPinnedCard(picture(8, 6), {.frame = Rect{300, 200, 304, 204}, .id = u"pinned"_s});
    pressClear();
    settle();
    controller->restoreLastDismissed();

    // Before the place of the others, and after it.
    model(u"pinned"_s).onDismiss();
    model(u"50"_s).onDismiss();
    EXPECT_EQ(listed(), numbers(1, 49));
    settle();
    EXPECT_EQ(ids(), numbers(1, 49));
}

TEST_F(ClearAllTest, clearingInBetweenTakesThoseThatAreStillToCome)
{
    showCards(50);
    pressClear();
    settle();
    controller->restoreLastDismissed();
    queue.advance(310ms);

    pressClear();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_THAT(store.images, IsEmpty());
    settle();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_EQ(ids(), numbers(1, 50));
}

TEST_F(ClearAllTest, twoGroupsThatComeBackTogetherKeepTheirOrder)
{
    showCards(30);
    pressClear();
    for (int number = 31; number <= 60; ++number) {
        controller->show(picture(8, 6), {.id = QString::number(number)});
    }
    pressClear();
    settle();

    controller->restoreLastDismissed();
    controller->restoreLastDismissed();
    EXPECT_EQ(listed(), numbers(31, 60) + numbers(1, 30));
    settle();
    EXPECT_EQ(ids(), numbers(31, 60) + numbers(1, 30));
    EXPECT_EQ(listed(), numbers(31, 60) + numbers(1, 30));
}

TEST_F(ClearAllTest, theEndOfTheProgramInBetweenIsInOrder)
{
    showCards(100);
    pressClear();
    controller->restoreLastDismissed();
    controller->persistManifest();
    EXPECT_EQ(listed(), numbers(1, 100));
    controller.reset();
    queue.advance(20s);
}

} // namespace
} // namespace lumenfold::test
