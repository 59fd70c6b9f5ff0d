#include "service/templates/TemplateStore.h"

#include "platform/notifications/NotificationCenter.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lumenfold::test {
namespace {

const LumenfoldTemplate banner{.id = QStringLiteral("t-1"), .name = QStringLiteral("Banner")};
const LumenfoldTemplate poster{.id = QStringLiteral("t-2"), .name = QStringLiteral("Poster 🎨")};

class TemplateStoreTest : public ::testing::Test {
protected:
    FakeUserDefaults m_defaults;
    NotificationCenter m_notifications;
    std::vector<Notification> m_posted;
    std::unique_ptr<NotificationCenter::Observation> m_observation =
        m_notifications.observe(TemplateStore::selectionChangedNotification,
                                [this](const Notification &posted) { m_posted.push_back(posted); });
    TemplateStore m_store{m_defaults, m_notifications};
};

TEST_F(TemplateStoreTest, KeysAndNotificationHaveTheirNames)
{
    EXPECT_EQ(TemplateStore::idKey, QStringLiteral("LumenFold.selectedTemplateId"));
    EXPECT_EQ(TemplateStore::nameKey, QStringLiteral("LumenFold.selectedTemplateName"));
    EXPECT_EQ(TemplateStore::selectionChangedNotification, QStringLiteral("LumenFold.templateSelectionChanged"));
}

TEST_F(TemplateStoreTest, NothingIsSelectedAtFirstAndNothingIsWritten)
{
    EXPECT_EQ(m_store.selectedId(), std::nullopt);
    EXPECT_FALSE(m_store.hasSelection());
    EXPECT_EQ(m_defaults.writes(), QStringList());
    EXPECT_TRUE(m_posted.empty());
}

TEST_F(TemplateStoreTest, SelectStoresIdAndNameAndAnnounces)
{
    m_store.select(poster);
    EXPECT_EQ(m_defaults.string(TemplateStore::idKey), poster.id);
    EXPECT_EQ(m_defaults.string(TemplateStore::nameKey), poster.name);
    EXPECT_EQ(m_store.selectedId(), poster.id);
    EXPECT_TRUE(m_store.hasSelection());
    ASSERT_EQ(m_posted.size(), 1u);
    EXPECT_EQ(m_posted[0].sender, nullptr);
    EXPECT_TRUE(m_posted[0].userInfo.isEmpty());
}

TEST_F(TemplateStoreTest, AnotherSelectionReplacesTheFirst)
{
    m_store.select(banner);
    m_store.select(poster);
    EXPECT_EQ(m_store.selectedId(), poster.id);
    EXPECT_EQ(m_defaults.string(TemplateStore::nameKey), poster.name);
    EXPECT_EQ(m_posted.size(), 2u);
}

TEST_F(TemplateStoreTest, SelectAndClearPostTwiceAndLeaveNeitherKey)
{
    m_store.select(banner);
    m_store.clear();
    EXPECT_EQ(m_posted.size(), 2u);
    EXPECT_EQ(m_defaults.keys(), QStringList());
    EXPECT_FALSE(m_store.hasSelection());
}

TEST_F(TemplateStoreTest, ClearAnnouncesAlsoWhenNothingWasSelected)
{
    m_store.clear();
    EXPECT_EQ(m_posted.size(), 1u);
}

TEST_F(TemplateStoreTest, ObserversSeeTheNewSelection)
{
    std::vector<std::optional<QString>> seen;
    const auto observation =
        m_notifications.observe(TemplateStore::selectionChangedNotification,
                                [&](const Notification &) { seen.push_back(m_store.selectedId()); });
    m_store.select(banner);
    m_store.clear();
    EXPECT_EQ(seen, (std::vector<std::optional<QString>>{banner.id, std::nullopt}));
}

TEST_F(TemplateStoreTest, ASelectionMadeByAnotherRunIsThere)
{
    m_defaults.setRaw(TemplateStore::idKey, QStringLiteral("t-9"));
    EXPECT_EQ(m_store.selectedId(), QStringLiteral("t-9"));
}

TEST_F(TemplateStoreTest, AnEmptyIdIsASelectionAndANumberIsNone)
{
    m_defaults.setRaw(TemplateStore::idKey, QString(QLatin1String("")));
    EXPECT_TRUE(m_store.hasSelection());
    m_defaults.setRaw(TemplateStore::idKey, qint64{5});
    EXPECT_FALSE(m_store.hasSelection());
}

TEST_F(TemplateStoreTest, TheSharedStoreIsTheOneThatWasNamed)
{
    TemplateStore::setShared(&m_store);
    EXPECT_EQ(&TemplateStore::shared(), &m_store);
    TemplateStore::setShared(nullptr);
}

} // namespace
} // namespace lumenfold::test
