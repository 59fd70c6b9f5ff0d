#include "platform/panels/PanelOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace lumenfold {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Windows = std::vector<std::uint32_t>;
using Place = RestackStep::Place;

/// What the server does with a step.
void apply(const RestackStep &step, Windows &stack)
{
    std::erase(stack, step.window);
    if (step.sibling == 0) {
        stack.push_back(step.window);
        return;
    }
    const auto sibling = std::ranges::find(stack, step.sibling);
    ASSERT_NE(sibling, stack.end()) << "sibling " << step.sibling << " is not on the server";
    stack.insert(step.place == Place::above ? std::next(sibling) : sibling, step.window);
}

TEST(RestackSteps, nothingToDoForTheSameOrder)
{
    EXPECT_THAT(restackSteps(Windows{1, 2, 3}, Windows{1, 2, 3}), IsEmpty());
    EXPECT_THAT(restackSteps(Windows{}, Windows{}), IsEmpty());
}

TEST(RestackSteps, aWindowThatLeftNeedsNothing)
{
    EXPECT_THAT(restackSteps(Windows{1, 2, 3}, Windows{1, 3}), IsEmpty());
}

TEST(RestackSteps, oneToTheFrontIsOneStep)
{
    EXPECT_THAT(restackSteps(Windows{1, 2, 3, 4}, Windows{1, 3, 4, 2}), ElementsAre(RestackStep{2, 4, Place::above}));
}

TEST(RestackSteps, oneToTheBackIsOneStep)
{
    EXPECT_THAT(restackSteps(Windows{1, 2, 3}, Windows{3, 1, 2}), ElementsAre(RestackStep{3, 1, Place::below}));
}

TEST(RestackSteps, aNewWindowIsPlaced)
{
    EXPECT_THAT(restackSteps(Windows{1, 2}, Windows{1, 7, 2}), ElementsAre(RestackStep{7, 1, Place::above}));
    EXPECT_THAT(restackSteps(Windows{}, Windows{7, 8}), ElementsAre(RestackStep{7, 0}, RestackStep{8, 7}));
}

TEST(RestackSteps, anyOrderIsReachedWithoutTouchingStrangers)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        Windows present(8);
        std::iota(present.begin(), present.end(), 1);
        Windows wanted = present;
        std::ranges::shuffle(wanted, random);
        // Two windows of other programs at the bottom.
        Windows stack{101, 102};
        stack.insert(stack.end(), present.begin(), present.end());
        for (const RestackStep &step : restackSteps(present, wanted)) {
            apply(step, stack);
        }
        Windows expected{101, 102};
        expected.insert(expected.end(), wanted.begin(), wanted.end());
        ASSERT_EQ(stack, expected);
    }
}

TEST(PanelOrder, theLastOrderedFrontIsOnTop)
{
    PanelOrder order;
    order.orderFront(1, PanelLevel::floating);
    order.orderFront(2, PanelLevel::floating);
    order.orderFront(1, PanelLevel::floating);
    EXPECT_THAT(order.bottomToTop(), ElementsAre(2, 1));
}

TEST(PanelOrder, screenSaverStaysAboveFloating)
{
    PanelOrder order;
    order.orderFront(10, PanelLevel::screenSaver);
    order.orderFront(1, PanelLevel::floating);
    order.orderFront(2, PanelLevel::floating);
    order.orderFront(11, PanelLevel::screenSaver);
    order.orderFront(1, PanelLevel::floating);
    EXPECT_THAT(order.bottomToTop(), ElementsAre(2, 1, 10, 11));
}

TEST(PanelOrder, removedWindowsLeaveTheLevelsIntact)
{
    PanelOrder order;
    order.orderFront(1, PanelLevel::floating);
    order.orderFront(2, PanelLevel::floating);
    order.orderFront(10, PanelLevel::screenSaver);
    order.remove(1);
    order.remove(99);
    order.orderFront(3, PanelLevel::floating);
    EXPECT_THAT(order.bottomToTop(), ElementsAre(2, 3, 10));
    order.remove(10);
    order.orderFront(2, PanelLevel::floating);
    EXPECT_THAT(order.bottomToTop(), ElementsAre(3, 2));
}

} // namespace
} // namespace lumenfold
