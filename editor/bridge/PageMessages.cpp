#include "editor/bridge/PageMessages.h"

#include <limits>
#include <utility>

namespace lumenfold {
namespace {

std::optional<int> count(const QJsonValue &value)
{
    constexpr int none = -1;
    const int number = value.toInt(none);
    return number >= 0 ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<MessagePiece> readMessagePiece(const QJsonObject &json)
{
    const auto message = count(json.value(u"message"));
    const auto index = count(json.value(u"index"));
    const auto length = count(json.value(u"length"));
    const QJsonValue document = json.value(u"document");
    const QJsonValue name = json.value(u"name");
    const QJsonValue origin = json.value(u"origin");
    const QJsonValue text = json.value(u"text");
    const QJsonValue isLast = json.value(u"last");
    if (!message || !index || !length || !document.isString() || !name.isString() || !origin.isString() ||
        !(text.isString() || text.isNull()) || !isLast.isBool()) {
        return std::nullopt;
    }
    return MessagePiece{.document = document.toString(),
                        .message = *message,
                        .index = *index,
                        .length = *length,
                        .name = name.toString(),
                        .origin = origin.toString(),
                        .text = text.isString() ? std::optional(text.toString()) : std::nullopt,
                        .isLast = isLast.toBool()};
}

MessageAssembly::Outcome MessageAssembly::add(const MessagePiece &piece)
{
    if (piece.index == 0) {
        forget();
    }
    if (!follows(piece)) {
        forget();
        return Outcome::refused;
    }
    m_characters += piece.text ? piece.text->size() : 0;
    if (m_characters > piece.length || piece.length > maximumMessageLength) {
        forget();
        return Outcome::refused;
    }
    if (piece.text) {
        if (!m_body) {
            m_body.emplace();
        }
        m_body->append(piece.text->toUtf8());
    }
    m_previous = piece;
    // Its text has been taken.
    m_previous->text.reset();
    if (!piece.isLast) {
        return Outcome::incomplete;
    }
    if (m_characters != piece.length) {
        forget();
        return Outcome::refused;
    }
    return Outcome::complete;
}

bool MessageAssembly::follows(const MessagePiece &piece) const
{
    if (!m_previous) {
        return piece.index == 0;
    }
    return !m_previous->isLast && piece.document == m_previous->document && piece.message == m_previous->message &&
           m_previous->index < std::numeric_limits<int>::max() && piece.index == m_previous->index + 1 &&
           piece.length == m_previous->length && piece.name == m_previous->name && piece.origin == m_previous->origin &&
           piece.text.has_value() == m_body.has_value();
}

PageMessage MessageAssembly::take()
{
    PageMessage message{m_previous ? m_previous->name : QString(), std::exchange(m_body, std::nullopt)};
    forget();
    return message;
}

void MessageAssembly::forget()
{
    m_previous.reset();
    m_body.reset();
    m_characters = 0;
}

} // namespace lumenfold
