#include "platform/statusitem/dbusmenu/DBusMenuModel.h"

#include "platform/statusitem/MenuText.h"

#include <QBuffer>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

QByteArray pngOf(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

QVariantMap propertiesOf(const MenuItem &item)
{
    if (item.kind == MenuItem::Kind::separator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties{{QStringLiteral("label"), plainLabel(item.title, u'_')}};
    if (!item.isEnabled) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (!item.image.isNull()) {
        properties.insert(QStringLiteral("icon-data"), pngOf(item.image));
    }
    if (const QStringList tokens = shortcutTokens(item); !tokens.isEmpty()) {
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(DBusMenuShortcut{tokens}));
    }
    return properties;
}

QVariantMap chosen(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap some;
    for (auto each = properties.begin(); each != properties.end(); ++each) {
        if (names.contains(each.key())) {
            some.insert(each.key(), each.value());
        }
    }
    return some;
}

} // namespace

void DBusMenuModel::setMenu(Menu menu)
{
    QHash<QString, int> ids;
    std::vector<Entry> entries;
    int separators = 0;
    for (MenuItem &item : menu) {
        // No title begins like this.
        QString key = item.kind == MenuItem::Kind::separator ? QStringLiteral("\n%1").arg(++separators) : item.title;
        while (ids.contains(key)) {
            key += u'\n';
        }
        const auto known = m_ids.constFind(key);
        const int id = known == m_ids.constEnd() ? ++m_lastId : *known;
        ids.insert(key, id);
        QVariantMap properties = propertiesOf(item);
        entries.push_back({id, std::move(item), std::move(properties)});
    }
    m_ids = ids;
    m_entries = std::move(entries);
    ++m_revision;
}

QList<int> DBusMenuModel::itemIds() const
{
    QList<int> ids{root};
    for (const Entry &entry : m_entries) {
        ids.append(entry.id);
    }
    return ids;
}

std::optional<QVariantMap> DBusMenuModel::properties(int id, const QStringList &names) const
{
    if (id == root) {
        return chosen({{QStringLiteral("children-display"), QStringLiteral("submenu")}}, names);
    }
    const auto index = indexOf(id);
    return index ? std::optional(chosen(m_entries[*index].properties, names)) : std::nullopt;
}

std::optional<DBusMenuLayout> DBusMenuModel::layout(int parentId, int depth, const QStringList &names) const
{
    const auto own = properties(parentId, names);
    if (!own) {
        return std::nullopt;
    }
    DBusMenuLayout layout{.id = parentId, .properties = *own, .children = {}};
    if (parentId == root && depth != 0) {
        for (const Entry &entry : m_entries) {
            layout.children.append({.id = entry.id, .properties = chosen(entry.properties, names), .children = {}});
        }
    }
    return layout;
}

std::function<void()> DBusMenuModel::actionOf(int id) const
{
    const auto index = indexOf(id);
    return index && m_entries[*index].item.isEnabled ? m_entries[*index].item.action : nullptr;
}

std::optional<std::size_t> DBusMenuModel::indexOf(int id) const
{
    const auto found = std::ranges::find(m_entries, id, &Entry::id);
    return found == m_entries.end() ? std::nullopt : std::optional<std::size_t>(found - m_entries.begin());
}

} // namespace lumenfold
