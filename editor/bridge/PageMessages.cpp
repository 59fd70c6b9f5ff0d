#include "editor/bridge/PageMessages.h"

namespace lumenfold {
namespace {

std::optional<int> count(const QJsonValue &value)
{
    constexpr int none = -1;
    const int number = value.toInt(none);
    return number >= 0 ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<PageMessage> readPageMessage(const QJsonObject &json)
{
    const auto number = count(json.value(u"message"));
    const auto length = count(json.value(u"length"));
    const QJsonValue document = json.value(u"document");
    const QJsonValue name = json.value(u"name");
    const QJsonValue origin = json.value(u"origin");
    const QJsonValue isText = json.value(u"isText");
    const QJsonValue text = json.value(u"text");
    if (!number || !length || *length > maximumMessageLength || !document.isString() || !name.isString() ||
        !origin.isString() || !isText.isBool() || !(text.isString() || text.isNull())) {
        return std::nullopt;
    }
    PageMessage message{.document = document.toString(),
                        .number = *number,
                        .name = name.toString(),
                        .origin = origin.toString(),
                        .isText = isText.toBool(),
                        .length = *length,
                        .text = text.isString() ? std::optional(text.toString()) : std::nullopt};
    const bool fits =
        message.isText ? !message.text || message.text->size() == message.length : !message.text && message.length == 0;
    return fits ? std::optional(std::move(message)) : std::nullopt;
}

} // namespace lumenfold
