#pragma once

#include <QString>
#include <QUrl>

#include <optional>
#include <utility>
#include <vector>

/// How addresses are put together.
namespace lumenfold {

/// What the user put in place of a built-in address; nothing when it is empty or no address. Neither a scheme nor a
/// host is asked for.
[[nodiscard]] std::optional<QUrl> overridingURL(const std::optional<QString> &text);

/// `base` with `component` as further parts of its path, with exactly one "/" between them. A query of `base` stays.
[[nodiscard]] QUrl appendingPathComponent(const QUrl &base, const QString &component);

/// `base` with these items, in this order, as its whole query. Names and values are plain text: whatever they hold
/// (another address with a query, "+", "%", "#") comes out the same on the other side. No items: no query.
[[nodiscard]] QUrl withQueryItems(const QUrl &base, const std::vector<std::pair<QString, QString>> &items);

} // namespace lumenfold
