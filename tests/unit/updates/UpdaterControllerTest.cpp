#include "app/updates/UpdaterController.h"

#include "platform/notifications/NotificationCenter.h"
#include "tests/support/fakes/FakeUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace lumenfold::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdaterControllerTest : public ::testing::Test {
protected:
    [[nodiscard]] FakeUpdater &updater() const { return dynamic_cast<FakeUpdater &>(*controller.controller()); }

    NotificationCenter notifications;
    int made = 0;
    UpdaterController controller{notifications, [this](UpdaterDelegate &delegate) {
                                     ++made;
                                     return std::make_unique<FakeUpdater>(delegate);
                                 }};
    /// Of each notification: what the flag was then.
    std::vector<bool> announced;
    std::vector<NotificationSender> senders;
    std::unique_ptr<NotificationCenter::Observation> observation = notifications.observe(
        QStringLiteral("LumenFold.updateAvailabilityChanged"), [this](const Notification &notification) {
            announced.push_back(controller.hasAvailableUpdate());
            senders.push_back(notification.sender);
        });
};

TEST_F(UpdaterControllerTest, TheUpdaterIsThereFromTheStart)
{
    EXPECT_EQ(made, 1);
    EXPECT_NE(controller.controller(), nullptr);
    EXPECT_FALSE(controller.hasAvailableUpdate());
    EXPECT_EQ(made, 1);
}

TEST_F(UpdaterControllerTest, ACheckThatFindsAnUpdateIsAnnouncedByTheController)
{
    updater().delegate.didFindValidUpdate({.version = QStringLiteral("2.0")});
    EXPECT_TRUE(controller.hasAvailableUpdate());
    EXPECT_THAT(announced, ElementsAre(true));
    EXPECT_THAT(senders, ElementsAre(&controller));
}

TEST_F(UpdaterControllerTest, OnlyChangesAreAnnounced)
{
    updater().delegate.updaterDidNotFindUpdate();
    EXPECT_THAT(announced, IsEmpty());
    updater().delegate.didFindValidUpdate({.version = QStringLiteral("2.0")});
    updater().delegate.didFindValidUpdate({.version = QStringLiteral("2.1")});
    updater().delegate.updaterDidNotFindUpdate();
    updater().delegate.updaterDidNotFindUpdate();
    EXPECT_THAT(announced, ElementsAre(true, false));
}

TEST_F(UpdaterControllerTest, TheFlagCanBeSet)
{
    controller.setHasAvailableUpdate(false);
    EXPECT_THAT(announced, IsEmpty());
    controller.setHasAvailableUpdate(true);
    controller.setHasAvailableUpdate(true);
    EXPECT_THAT(announced, ElementsAre(true));
}

TEST_F(UpdaterControllerTest, WithoutUpdatesThereIsNothingToCheck)
{
    const UpdaterController without(notifications, [](UpdaterDelegate &) { return nullptr; });
    EXPECT_EQ(without.controller(), nullptr);
    EXPECT_FALSE(without.hasAvailableUpdate());
}

TEST_F(UpdaterControllerTest, TheSharedOneIsTheOneThatWasNamed)
{
    UpdaterController::setShared(&controller);
    EXPECT_EQ(&UpdaterController::shared(), &controller);
    UpdaterController::setShared(nullptr);
}

} // namespace
} // namespace lumenfold::test
