#pragma once

#include "platform/statusitem/StatusItem.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace lumenfold::test {

/// What a status area would show. The item itself belongs to whoever was given it; this stays with the test.
class FakeStatusArea {
public:
    /// Hands out the one item.
    [[nodiscard]] std::unique_ptr<StatusItem> makeItem();

    /// As shown: "-" for a separator.
    [[nodiscard]] QStringList titles() const;
    /// Null when there is none of this title.
    [[nodiscard]] const MenuItem *item(const QString &title) const;
    /// The user chooses the item. False when there is none, or it is disabled or does nothing.
    bool click(const QString &title);

    bool hasItem = false;
    StatusImage image;
    bool isBadgeVisible = false;
    Menu menu;
    /// How often a menu was set.
    int menus = 0;
    /// Told of each call as it happens ("setImage", "setUpdateBadgeVisible true", "setMenu").
    std::function<void(const QString &)> onCall;

private:
    class Item;
};

} // namespace lumenfold::test
