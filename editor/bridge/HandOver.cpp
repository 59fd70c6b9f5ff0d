#include "editor/bridge/HandOver.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace lumenfold {

QByteArray handOverMembers(const HandOver &handOver)
{
    QJsonObject members{
        {QStringLiteral("type"), QStringLiteral("hello")},
        {QStringLiteral("provider"), QStringLiteral("electron")},
    };
    const auto add = [&members](const QString &name, const std::optional<QString> &value) {
        if (value && !value->isEmpty()) {
            members.insert(name, *value);
        }
    };
    add(QStringLiteral("screenshotId"), handOver.screenshotId);
    add(QStringLiteral("apiKey"), handOver.apiKey);
    add(QStringLiteral("templateId"), handOver.templateId);
    return QJsonDocument(members).toJson(QJsonDocument::Compact);
}

} // namespace lumenfold
