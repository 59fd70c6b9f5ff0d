#include "platform/notifications/NotificationCenter.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace lumenfold::test {
namespace {

const QString changed = QStringLiteral("LumenFold.changed");

TEST(NotificationCenter, TellsObserversOfThatNameInTheOrderOfRegistering)
{
    NotificationCenter center;
    QStringList told;
    const auto first = center.observe(changed, [&](const Notification &) { told.append(QStringLiteral("first")); });
    const auto other =
        center.observe(QStringLiteral("another"), [&](const Notification &) { told.append(QStringLiteral("other")); });
    const auto second = center.observe(changed, [&](const Notification &) { told.append(QStringLiteral("second")); });
    center.post(changed);
    EXPECT_EQ(told, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

TEST(NotificationCenter, HandsOverSenderAndUserInfo)
{
    NotificationCenter center;
    std::optional<Notification> got;
    const auto observation = center.observe(changed, [&](const Notification &notification) { got = notification; });
    center.post(changed, &center, {{QStringLiteral("recording"), true}});
    ASSERT_TRUE(got);
    EXPECT_EQ(got->name, changed);
    EXPECT_EQ(got->sender, &center);
    EXPECT_EQ(got->userInfo, (QVariantMap{{QStringLiteral("recording"), true}}));

    center.post(changed);
    EXPECT_EQ(got->sender, nullptr);
    EXPECT_TRUE(got->userInfo.isEmpty());
}

TEST(NotificationCenter, AnEndedObservationHearsNothing)
{
    NotificationCenter center;
    int calls = 0;
    auto observation = center.observe(changed, [&](const Notification &) { ++calls; });
    center.post(changed);
    observation.reset();
    center.post(changed);
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, AnObserverThatGoesAwayDuringTheDeliveryIsNotCalled)
{
    NotificationCenter center;
    int calls = 0;
    std::unique_ptr<NotificationCenter::Observation> second;
    const auto first = center.observe(changed, [&](const Notification &) { second.reset(); });
    second = center.observe(changed, [&](const Notification &) { ++calls; });
    center.post(changed);
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, AnObserverMayEndItself)
{
    NotificationCenter center;
    int calls = 0;
    std::unique_ptr<NotificationCenter::Observation> observation;
    auto alive = std::make_shared<int>(0);
    observation = center.observe(changed, [&, alive](const Notification &) {
        observation.reset();
        // What the handler holds is still there.
        calls += 1 + *alive;
    });
    center.post(changed);
    center.post(changed);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(alive.use_count(), 1);
}

TEST(NotificationCenter, AnObserverThatComesDuringTheDeliveryHearsTheNextOne)
{
    NotificationCenter center;
    int calls = 0;
    std::unique_ptr<NotificationCenter::Observation> late;
    const auto first = center.observe(changed, [&](const Notification &) {
        if (!late) {
            late = center.observe(changed, [&](const Notification &) { ++calls; });
        }
    });
    center.post(changed);
    EXPECT_EQ(calls, 0);
    center.post(changed);
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, AHandlerMayPost)
{
    NotificationCenter center;
    QStringList told;
    const auto outer = center.observe(changed, [&](const Notification &) {
        center.post(QStringLiteral("inner"));
        told.append(QStringLiteral("outer"));
    });
    const auto inner =
        center.observe(QStringLiteral("inner"), [&](const Notification &) { told.append(QStringLiteral("inner")); });
    center.post(changed);
    EXPECT_EQ(told, QStringList({QStringLiteral("inner"), QStringLiteral("outer")}));
}

TEST(NotificationCenter, AnObservationMayOutliveItsCenter)
{
    auto center = std::make_unique<NotificationCenter>();
    auto observation = center->observe(changed, [](const Notification &) {});
    center.reset();
    observation.reset();
}

TEST(NotificationCenter, AHandlerMayEndTheCenter)
{
    auto center = std::make_unique<NotificationCenter>();
    int calls = 0;
    const auto first = center->observe(changed, [&](const Notification &) { center.reset(); });
    const auto second = center->observe(changed, [&](const Notification &) { ++calls; });
    center->post(changed);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace lumenfold::test
