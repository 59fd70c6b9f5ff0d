#include "platform/statusitem/dbusmenu/DBusMenuModel.h"

#include "platform/keyboard/KeyEvent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class DBusMenuModelTest : public ::testing::Test {
protected:
    MenuItem command(const QString &title)
    {
        MenuItem item;
        item.title = title;
        item.action = [this, title] { done.append(title); };
        return item;
    }

    [[nodiscard]] int idOf(const QString &label) const
    {
        const QList<int> ids = model.itemIds();
        for (const int id : ids) {
            if (model.properties(id, {})->value(QStringLiteral("label")) == label) {
                return id;
            }
        }
        return -1;
    }

    void click(int id) const
    {
        if (const auto action = model.actionOf(id)) {
            action();
        }
    }

    DBusMenuModel model;
    QStringList done;
};

TEST_F(DBusMenuModelTest, ItemsSayWhatIsNotTheirDefault)
{
    MenuItem disabled = command(QStringLiteral("told_only"));
    disabled.isEnabled = false;
    MenuItem keyed = command(QStringLiteral("keyed"));
    keyed.keyEquivalent = QStringLiteral("q");
    keyed.keyEquivalentModifierMask = keyFlags::command;
    keyed.image = QImage(4, 4, QImage::Format_ARGB32);
    keyed.image.fill(Qt::red);
    model.setMenu({disabled, MenuItem::separator(), keyed});

    const auto layout = model.layout(DBusMenuModel::root, -1, {});
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->properties, (QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}}));
    ASSERT_EQ(layout->children.size(), 3);
    EXPECT_EQ(layout->children[0].properties, (QVariantMap{{QStringLiteral("label"), QStringLiteral("told__only")},
                                                           {QStringLiteral("enabled"), false}}));
    EXPECT_EQ(layout->children[1].properties, (QVariantMap{{QStringLiteral("type"), QStringLiteral("separator")}}));
    const QVariantMap last = layout->children[2].properties;
    EXPECT_EQ(last.value(QStringLiteral("shortcut")).value<DBusMenuShortcut>(),
              DBusMenuShortcut({{QStringLiteral("Super"), QStringLiteral("Q")}}));
    EXPECT_EQ(QImage::fromData(last.value(QStringLiteral("icon-data")).toByteArray(), "PNG").pixelColor(2, 2),
              QColor(Qt::red));
    EXPECT_FALSE(last.contains(QStringLiteral("enabled")));
}

TEST_F(DBusMenuModelTest, OnlyWhatIsAskedForIsTold)
{
    model.setMenu({command(QStringLiteral("a"))});
    EXPECT_TRUE(model.layout(DBusMenuModel::root, 0, {})->children.isEmpty());
    EXPECT_EQ(model.layout(DBusMenuModel::root, 1, {QStringLiteral("enabled")})->children[0].properties, QVariantMap());
    EXPECT_FALSE(model.layout(77, -1, {}));
    EXPECT_FALSE(model.properties(-1, {}));
    EXPECT_FALSE(model.contains(77));
    EXPECT_TRUE(model.contains(DBusMenuModel::root));
    EXPECT_EQ(model.layout(idOf(QStringLiteral("a")), -1, {})->children.size(), 0);
}

TEST_F(DBusMenuModelTest, AClickOnAnOldMenuDoesWhatTheUserSaw)
{
    model.setMenu({command(QStringLiteral("area")), command(QStringLiteral("disconnect"))});
    const int area = idOf(QStringLiteral("area"));
    const int disconnect = idOf(QStringLiteral("disconnect"));
    model.setMenu({command(QStringLiteral("update")), MenuItem::separator(), command(QStringLiteral("area")),
                   command(QStringLiteral("connect"))});
    click(area);
    EXPECT_EQ(done, QStringList{QStringLiteral("area")});
    // What is gone is not something else now.
    click(disconnect);
    EXPECT_EQ(done.size(), 1);
    EXPECT_FALSE(model.contains(disconnect));
}

TEST_F(DBusMenuModelTest, EveryItemHasANumberOfItsOwn)
{
    model.setMenu({command(QStringLiteral("a")), MenuItem::separator(), command(QStringLiteral("a")),
                   MenuItem::separator(), command(QStringLiteral("b"))});
    const QList<int> ids = model.itemIds();
    EXPECT_EQ(QSet<int>(ids.begin(), ids.end()).size(), 6);
    EXPECT_EQ(model.revision(), 1U);
    model.setMenu({});
    EXPECT_EQ(model.itemIds(), QList<int>{DBusMenuModel::root});
    EXPECT_EQ(model.revision(), 2U);
}

TEST_F(DBusMenuModelTest, WhatCannotBeChosenDoesNothing)
{
    MenuItem disabled = command(QStringLiteral("disabled"));
    disabled.isEnabled = false;
    MenuItem idle;
    idle.title = QStringLiteral("idle");
    model.setMenu({disabled, idle, MenuItem::separator()});
    for (int id = -1; id < 10; ++id) {
        EXPECT_FALSE(model.actionOf(id));
    }
}

} // namespace
} // namespace lumenfold::test
