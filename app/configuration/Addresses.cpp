#include "app/configuration/Addresses.h"

#include <QStringList>

namespace lumenfold {
namespace {

QString encodedQueryText(const QString &text)
{
    // Left readable is what a query may hold and no form decoder changes; "+" is not, because decoders make it a blank.
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "/:?@!$'()*,;"));
}

} // namespace

std::optional<QUrl> overridingURL(const std::optional<QString> &text)
{
    if (!text || text->isEmpty()) {
        return std::nullopt;
    }
    QUrl url(*text, QUrl::StrictMode);
    if (!url.isValid()) {
        return std::nullopt;
    }
    return url;
}

QUrl appendingPathComponent(const QUrl &base, const QString &component)
{
    QString path = base.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/')) {
        path.chop(1);
    }
    if (!component.startsWith(u'/')) {
        path += u'/';
    }
    QUrl url = base;
    url.setPath(path + component, QUrl::TolerantMode);
    return url;
}

QUrl withQueryItems(const QUrl &base, const std::vector<std::pair<QString, QString>> &items)
{
    QStringList parts;
    for (const auto &[name, value] : items) {
        parts.append(encodedQueryText(name) + u'=' + encodedQueryText(value));
    }
    QUrl url = base;
    url.setQuery(parts.isEmpty() ? QString() : parts.join(u'&'), QUrl::StrictMode);
    return url;
}

} // namespace lumenfold
