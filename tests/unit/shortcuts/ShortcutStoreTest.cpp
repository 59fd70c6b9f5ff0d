#include "shortcuts/ShortcutStore.h"

#include "platform/notifications/NotificationCenter.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lumenfold::test {
namespace {

using Action = ShortcutStore::Action;

const QString areaKey = QStringLiteral("LumenFold.shortcut.area");
const Shortcut controlA{0, 0x1000, QStringLiteral("⌃A")};
const Shortcut defaultArea{19, 0x0900, QStringLiteral("⌥⌘2")};

class ShortcutStoreTest : public ::testing::Test {
protected:
    ShortcutStoreTest()
    {
        const auto keep = [this](const Notification &posted) { m_posted.push_back(posted); };
        m_observations.push_back(m_notifications.observe(ShortcutStore::changedNotification, keep));
        m_observations.push_back(m_notifications.observe(ShortcutStore::recordingNotification, keep));
    }

    void storeArea(const QByteArray &data) { m_defaults.setRaw(areaKey, data); }

    FakeUserDefaults m_defaults;
    NotificationCenter m_notifications;
    std::vector<Notification> m_posted;
    std::vector<std::unique_ptr<NotificationCenter::Observation>> m_observations;
    ShortcutStore m_store{m_defaults, m_notifications};
};

TEST_F(ShortcutStoreTest, NamesOfTheNotifications)
{
    EXPECT_EQ(ShortcutStore::changedNotification, QStringLiteral("LumenFold.shortcutsChanged"));
    EXPECT_EQ(ShortcutStore::recordingNotification, QStringLiteral("LumenFold.shortcutRecording"));
}

TEST_F(ShortcutStoreTest, ActionsHaveRawValues)
{
    const std::vector<QString> names{QStringLiteral("fullScreen"), QStringLiteral("area"), QStringLiteral("lastArea"),
                                     QStringLiteral("undo")};
    std::vector<QString> seen;
    for (const Action action : ShortcutStore::allActions) {
        seen.push_back(ShortcutStore::rawValue(action));
        EXPECT_EQ(ShortcutStore::actionFromRawValue(seen.back()), action);
    }
    EXPECT_EQ(seen, names);
    EXPECT_EQ(ShortcutStore::actionFromRawValue(u"fullscreen"), std::nullopt);
    EXPECT_EQ(ShortcutStore::actionFromRawValue(u"area "), std::nullopt);
    EXPECT_EQ(ShortcutStore::actionFromRawValue(u""), std::nullopt);
}

TEST_F(ShortcutStoreTest, HasDefaultsThatAreNeverWritten)
{
    EXPECT_EQ(m_store.shortcut(Action::fullScreen), (Shortcut{18, 0x0900, QStringLiteral("⌥⌘1")}));
    EXPECT_EQ(m_store.shortcut(Action::area), defaultArea);
    EXPECT_EQ(m_store.shortcut(Action::lastArea), (Shortcut{20, 0x0900, QStringLiteral("⌥⌘3")}));
    EXPECT_EQ(m_store.shortcut(Action::undo), (Shortcut{6, 0x0100, QStringLiteral("⌘Z")}));
    EXPECT_EQ(m_defaults.writes(), QStringList());
    EXPECT_TRUE(m_posted.empty());
}

TEST_F(ShortcutStoreTest, EqualityIncludesTheDisplayText)
{
    EXPECT_EQ(controlA, (Shortcut{0, 0x1000, QStringLiteral("⌃A")}));
    EXPECT_NE(controlA, (Shortcut{0, 0x1000, QStringLiteral("⌃Q")}));
    EXPECT_NE(controlA, (Shortcut{1, 0x1000, QStringLiteral("⌃A")}));
    EXPECT_NE(controlA, (Shortcut{0, 0x1100, QStringLiteral("⌃A")}));
}

TEST_F(ShortcutStoreTest, SetStoresCompactJsonAsDataAndAnnouncesOnce)
{
    m_store.set(controlA, Action::area);

    const auto data = m_defaults.data(areaKey);
    ASSERT_TRUE(data);
    const QJsonObject expected{{QStringLiteral("keyCode"), 0},
                               {QStringLiteral("carbonModifiers"), 4096},
                               {QStringLiteral("display"), QStringLiteral("⌃A")}};
    EXPECT_EQ(QJsonDocument::fromJson(*data).object(), expected);
    EXPECT_TRUE(data->contains("⌃A")) << "the text stands there as UTF-8, not as escapes";
    EXPECT_FALSE(data->contains(' ') || data->contains('\n'));

    EXPECT_EQ(m_store.shortcut(Action::area), controlA);
    ASSERT_EQ(m_posted.size(), 1u);
    EXPECT_EQ(m_posted[0].name, ShortcutStore::changedNotification);
    EXPECT_EQ(m_posted[0].sender, nullptr);
    EXPECT_TRUE(m_posted[0].userInfo.isEmpty());
}

TEST_F(ShortcutStoreTest, ObserversOfAChangeSeeTheNewShortcut)
{
    std::vector<Shortcut> seen;
    const auto observation = m_notifications.observe(ShortcutStore::changedNotification, [&](const Notification &) {
        seen.push_back(m_store.shortcut(Action::area));
    });
    m_store.set(controlA, Action::area);
    m_store.reset(Action::area);
    EXPECT_EQ(seen, (std::vector{controlA, defaultArea}));
}

TEST_F(ShortcutStoreTest, EachActionHasAnEntryOfItsOwn)
{
    for (const Action action : ShortcutStore::allActions) {
        m_store.set(controlA, action);
    }
    EXPECT_EQ(m_defaults.writes(),
              (QStringList{QStringLiteral("LumenFold.shortcut.fullScreen"), areaKey,
                           QStringLiteral("LumenFold.shortcut.lastArea"), QStringLiteral("LumenFold.shortcut.undo")}));
}

TEST_F(ShortcutStoreTest, KeepsTheLargestNumbers)
{
    const Shortcut largest{0xffffffff, 0xffffffff, QString()};
    m_store.set(largest, Action::area);
    EXPECT_EQ(m_store.shortcut(Action::area), largest);
}

TEST_F(ShortcutStoreTest, AShortcutThatCannotBeEncodedIsAnnouncedButNotStored)
{
    m_store.set(controlA, Action::area);
    const Shortcut broken{1, 0x0100, QString(QChar(0xd800))};
    m_store.set(broken, Action::area);
    EXPECT_EQ(m_store.shortcut(Action::area), controlA);
    EXPECT_EQ(m_posted.size(), 2u);
}

TEST_F(ShortcutStoreTest, StoredValuesAreTakenAsTheyAre)
{
    storeArea(R"({"display":"","carbonModifiers":4294967295,"keyCode":4000,"more":[1]})");
    EXPECT_EQ(m_store.shortcut(Action::area), (Shortcut{4000, 0xffffffff, QString()}));
}

class UnreadableShortcut : public ShortcutStoreTest, public ::testing::WithParamInterface<const char *> {};

TEST_P(UnreadableShortcut, ReadsAsTheDefaultAndStays)
{
    storeArea(GetParam());
    EXPECT_EQ(m_store.shortcut(Action::area), defaultArea);
    EXPECT_EQ(m_defaults.data(areaKey), QByteArray(GetParam()));
    EXPECT_TRUE(m_posted.empty());
}

INSTANTIATE_TEST_SUITE_P(Forms, UnreadableShortcut,
                         ::testing::Values("", "not JSON", "null", "[18,2304,\"x\"]",
                                           R"({"keyCode":1,"carbonModifiers":256})", R"({"keyCode":1,"display":"x"})",
                                           R"({"carbonModifiers":256,"display":"x"})",
                                           R"({"keyCode":"1","carbonModifiers":256,"display":"x"})",
                                           R"({"keyCode":1,"carbonModifiers":true,"display":"x"})",
                                           R"({"keyCode":1,"carbonModifiers":256,"display":7})",
                                           R"({"keyCode":1,"carbonModifiers":256,"display":null})",
                                           R"({"keyCode":-1,"carbonModifiers":256,"display":"x"})",
                                           R"({"keyCode":4294967296,"carbonModifiers":256,"display":"x"})",
                                           R"({"keyCode":1,"carbonModifiers":1e300,"display":"x"})",
                                           R"({"keyCode":1.5,"carbonModifiers":256,"display":"x"})",
                                           R"({"KeyCode":1,"carbonModifiers":256,"display":"x"})",
                                           R"({"keyCode":1,"carbonModifiers":256,"display":"x"} trailing)",
                                           "{\"keyCode\":1,\"carbonMod"));

TEST_F(ShortcutStoreTest, AnEntryThatIsATextReadsAsTheDefaultAndStays)
{
    m_defaults.setRaw(areaKey, QStringLiteral(R"({"keyCode":0,"carbonModifiers":4096,"display":"⌃A"})"));
    EXPECT_EQ(m_store.shortcut(Action::area), defaultArea);
    EXPECT_TRUE(m_defaults.contains(areaKey));
}

TEST_F(ShortcutStoreTest, ResetForgetsAndAnnounces)
{
    m_store.set(controlA, Action::area);
    m_store.reset(Action::area);
    EXPECT_FALSE(m_defaults.contains(areaKey));
    EXPECT_EQ(m_store.shortcut(Action::area), defaultArea);
    EXPECT_EQ(m_posted.size(), 2u);
}

TEST_F(ShortcutStoreTest, ResetAnnouncesAlsoWhenNothingWasStored)
{
    m_store.reset(Action::undo);
    ASSERT_EQ(m_posted.size(), 1u);
    EXPECT_EQ(m_posted[0].name, ShortcutStore::changedNotification);
}

TEST_F(ShortcutStoreTest, RecordingIsAnnouncedWithOneEntry)
{
    m_store.postRecording(true);
    m_store.postRecording(false);
    ASSERT_EQ(m_posted.size(), 2u);
    EXPECT_EQ(m_posted[0].name, ShortcutStore::recordingNotification);
    EXPECT_EQ(m_posted[0].sender, nullptr);
    EXPECT_EQ(m_posted[0].userInfo, (QVariantMap{{QStringLiteral("recording"), true}}));
    EXPECT_EQ(m_posted[1].userInfo, (QVariantMap{{QStringLiteral("recording"), false}}));
}

TEST_F(ShortcutStoreTest, TheSharedStoreIsTheOneThatWasNamed)
{
    ShortcutStore::setShared(&m_store);
    EXPECT_EQ(&ShortcutStore::shared(), &m_store);
    ShortcutStore::setShared(nullptr);
}

} // namespace
} // namespace lumenfold::test
