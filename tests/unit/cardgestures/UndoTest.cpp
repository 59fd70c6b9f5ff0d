/// Removals of single cards and their undoing.
#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UndoTest : public CardsTest {
protected:
    UndoTest()
    {
        controller->onUndoAvailabilityChanged = [this](bool available) { m_told.push_back(available); };
    }

    std::vector<bool> m_told;
};

TEST_F(UndoTest, thereIsNothingToBringBackAtFirst)
{
    showCards(2);
    EXPECT_FALSE(controller->restoreLastDismissed());
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(UndoTest, aDismissedCardComesBackAsTheNewest)
{
    const Image image = picture(8, 6);
    const Image source = picture(16, 12);
    controller->show(image, {.editorSourceImage = source, .editorSourceId = u"source"_s, .id = u"1"_s});
    controller->show(picture(8, 6), {.id = u"2"_s});
    settle();

    model(u"1"_s).onDismiss();
    EXPECT_THAT(m_told, ElementsAre(true));
    settle();
    store.calls.clear();
    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_THAT(m_told, ElementsAre(true, false));
    ASSERT_EQ(ids(), QStringList({u"2"_s, u"1"_s}));
    EXPECT_EQ(model(u"1"_s).image(), image);
    EXPECT_EQ(model(u"1"_s).editorSourceImage(), source);
    EXPECT_EQ(model(u"1"_s).editorSourceId(), u"source"_s);
    // The files are written again.
    EXPECT_EQ(store.calls, QStringList({u"save 1"_s, u"save source 1"_s, u"manifest"_s}));
    EXPECT_EQ(store.images.value(u"1"_s), image);
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1)));
    EXPECT_EQ(panel(u"1"_s).alpha(), 1);
}

TEST_F(UndoTest, aCardComesBackWhileItIsStillLeaving)
{
    showCards(2);
    model(u"2"_s).onDismiss();
    queue.advance(50ms);

    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"2"_s}));
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s}));
    EXPECT_TRUE(store.images.contains(u"2"_s));
}

TEST_F(UndoTest, aPinnedCardComesBackWhereItWas)
{
    controller->showPinnedCard(picture(200, 100), {.frame = Rect{300, 200, 304, 204}, .id = u"pinned"_s});
    model(u"pinned"_s).onPanDragBegan();
    model(u"pinned"_s).onPanDragChanged({-600, 10});
    model(u"pinned"_s).onPanDragEnded();

    model(u"pinned"_s).onDismiss();
    settle();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_TRUE(controller->restoreLastDismissed());
    ASSERT_EQ(ids(), QStringList(u"pinned"_s));
    EXPECT_EQ(card(u"pinned"_s)->variant, PreviewCardVariant::pinned);
    EXPECT_EQ(panel(u"pinned"_s).frame(), (Rect{-300, 210, 304, 204}));
    EXPECT_TRUE(panel(u"pinned"_s).isVisible());
}

TEST_F(UndoTest, threeDismissalsExpireTogether)
{
    showCards(4);
    model(u"1"_s).onDismiss();
    queue.advance(9s);
    model(u"2"_s).onDismiss();
    queue.advance(9s);
    model(u"3"_s).onDismiss();
    m_told.clear();

    queue.advance(11999ms);
    EXPECT_THAT(m_told, IsEmpty());
    queue.advance(1ms);
    EXPECT_THAT(m_told, ElementsAre(false));
    EXPECT_FALSE(controller->restoreLastDismissed());
    EXPECT_EQ(ids(), QStringList(u"4"_s));
}

TEST_F(UndoTest, whatTheEditorReplacesIsNoDismissal)
{
    defaults.setBoolean(u"LumenFold.replaceCardOnEdit"_s, true);
    showCards(1);
    model(u"1"_s).onEditRequested();
    editor.sessions.at(0).onExport(picture(10, 10));

    EXPECT_EQ(ids(), QStringList(u"1"_s));
    EXPECT_THAT(m_told, IsEmpty());
    EXPECT_FALSE(controller->restoreLastDismissed());
}

TEST_F(UndoTest, undoingExpandsACollapsedColumn)
{
    showCards(3);
    model(u"3"_s).onDismiss();
    controller->toggleCollapse();
    ASSERT_TRUE(controller->isCollapsed());

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_FALSE(controller->controlState().isCollapsed());
}

TEST_F(UndoTest, cardsThatComeBackWhileAllAreHiddenStayHidden)
{
    showCards(2);
    model(u"2"_s).onDismiss();
    settle();
    controller->setHiddenForCapture(true);

    EXPECT_TRUE(controller->restoreLastDismissed());
    settle();
    EXPECT_THAT(stacking(), IsEmpty());
    controller->setHiddenForCapture(false);
    settle();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s}));
}

TEST_F(UndoTest, theLastCardsComebackIsWatchedAgain)
{
    showCards(1);
    model(u"1"_s).onDismiss();
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());

    controller->restoreLastDismissed();
    EXPECT_THAT(monitors.globalMasks(), ElementsAre(0x400020));
}

TEST_F(UndoTest, aControllerThatIsGoneLeavesNothingToDo)
{
    showCards(3);
    model(u"1"_s).onDismiss();
    controller.reset();
    queue.advance(20s);
    EXPECT_THAT(m_told, ElementsAre(true));
}

} // namespace
} // namespace lumenfold::test
