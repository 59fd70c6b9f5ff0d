#pragma once

#include "platform/statusitem/StatusItem.h"
#include "platform/statusitem/dbusmenu/DBusMenuTypes.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

/// A menu as the desktop asks for it: items have numbers, and what they are is a list of properties. Knows no bus.
///
/// An item keeps its number for as long as there is one of its title, across menus: what the user saw and clicked is
/// what happens, also when the menu was built anew meanwhile. Numbers are never used again for something else.
class DBusMenuModel {
public:
    /// Of the menu itself.
    static constexpr int root = 0;

    /// In place of the one before.
    void setMenu(Menu menu);

    /// Counts the menus.
    [[nodiscard]] uint revision() const { return m_revision; }
    [[nodiscard]] bool contains(int id) const { return id == root || indexOf(id).has_value(); }
    [[nodiscard]] QList<int> itemIds() const;

    /// Those that are named, or all if none is. What has its default is left out. Nothing for an unknown number.
    [[nodiscard]] std::optional<QVariantMap> properties(int id, const QStringList &names) const;
    /// An item and, for a depth other than 0, what is in it. Nothing for an unknown number.
    [[nodiscard]] std::optional<DBusMenuLayout> layout(int parentId, int depth, const QStringList &names) const;

    /// What the item does; empty for one that is unknown, disabled or does nothing.
    [[nodiscard]] std::function<void()> actionOf(int id) const;

private:
    struct Entry {
        int id = 0;
        MenuItem item;
        QVariantMap properties;
    };

    [[nodiscard]] std::optional<std::size_t> indexOf(int id) const;

    std::vector<Entry> m_entries;
    /// By title; separators by how many there are before them.
    QHash<QString, int> m_ids;
    int m_lastId = root;
    uint m_revision = 0;
};

} // namespace lumenfold
