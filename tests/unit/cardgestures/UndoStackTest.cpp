#include "cards/UndoStack.h"

#include "tests/support/fakes/FakeMainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UndoStackTest : public ::testing::Test {
protected:
    UndoStackTest()
    {
        m_undo->onAvailabilityChanged = [this](bool available) { m_told.push_back(available); };
    }

    static UndoStack::Group group(const QStringList &ids)
    {
        UndoStack::Group result;
        for (const QString &id : ids) {
            result.push_back({.screenshotId = id});
        }
        return result;
    }

    /// The ids of the newest group; "nothing" when there is none.
    QStringList undo()
    {
        QStringList ids;
        const bool hasUndone = m_undo->undoNewest([&](const UndoStack::Group &undone) {
            for (const DismissedCard &card : undone) {
                ids.append(card.screenshotId);
            }
        });
        return hasUndone ? ids : QStringList(u"nothing"_s);
    }

    FakeMainQueue m_queue;
    std::unique_ptr<UndoStack> m_undo = std::make_unique<UndoStack>(m_queue);
    std::vector<bool> m_told;
};

TEST_F(UndoStackTest, thereIsNothingToUndoAtFirst)
{
    EXPECT_EQ(undo(), QStringList(u"nothing"_s));
    EXPECT_THAT(m_told, IsEmpty());
    EXPECT_EQ(m_queue.pendingCount(), 0U);
}

TEST_F(UndoStackTest, theNewestGroupComesBackFirst)
{
    m_undo->push(group({u"1"_s, u"2"_s}));
    m_undo->push(group({u"3"_s}));
    EXPECT_THAT(m_told, ElementsAre(true, true));

    EXPECT_EQ(undo(), QStringList(u"3"_s));
    EXPECT_THAT(m_told, ElementsAre(true, true));
    EXPECT_EQ(undo(), QStringList({u"1"_s, u"2"_s}));
    EXPECT_THAT(m_told, ElementsAre(true, true, false));
    EXPECT_EQ(undo(), QStringList(u"nothing"_s));
}

TEST_F(UndoStackTest, allGroupsExpireTwelveSecondsAfterTheLastOne)
{
    m_undo->push(group({u"1"_s}));
    m_queue.advance(9s);
    m_undo->push(group({u"2"_s}));
    m_queue.advance(9s);
    m_undo->push(group({u"3"_s}));
    m_told.clear();

    m_queue.advance(11999ms);
    EXPECT_FALSE(m_undo->isEmpty());
    EXPECT_THAT(m_told, IsEmpty());
    m_queue.advance(1ms);
    EXPECT_TRUE(m_undo->isEmpty());
    EXPECT_THAT(m_told, ElementsAre(false));
    EXPECT_EQ(undo(), QStringList(u"nothing"_s));
}

TEST_F(UndoStackTest, undoingGivesTheRestAnotherTwelveSeconds)
{
    m_undo->push(group({u"1"_s}));
    m_undo->push(group({u"2"_s}));
    m_queue.advance(11s);
    undo();
    m_queue.advance(11s);
    EXPECT_FALSE(m_undo->isEmpty());
    m_queue.advance(1s);
    EXPECT_TRUE(m_undo->isEmpty());
}

TEST_F(UndoStackTest, undoingTheLastGroupLeavesNothingToWaitFor)
{
    m_undo->push(group({u"1"_s}));
    undo();
    EXPECT_EQ(m_queue.pendingCount(), 0U);
    m_queue.advance(20s);
    EXPECT_THAT(m_told, ElementsAre(true, false));
}

TEST_F(UndoStackTest, theCardsAreBackBeforeItIsToldThatNothingIsLeft)
{
    m_undo->push(group({u"1"_s}));
    m_undo->undoNewest([this](const UndoStack::Group &) { EXPECT_THAT(m_told, ElementsAre(true)); });
    EXPECT_THAT(m_told, ElementsAre(true, false));
}

TEST_F(UndoStackTest, aStackThatIsGoneWaitsForNothing)
{
    m_undo->push(group({u"1"_s}));
    m_undo.reset();
    EXPECT_EQ(m_queue.pendingCount(), 0U);
    m_queue.advance(20s);
    EXPECT_THAT(m_told, ElementsAre(true));
}

TEST_F(UndoStackTest, nobodyNeedBeTold)
{
    m_undo->onAvailabilityChanged = nullptr;
    m_undo->push(group({u"1"_s}));
    m_queue.advance(12s);
    EXPECT_TRUE(m_undo->isEmpty());
}

} // namespace
} // namespace lumenfold::test
