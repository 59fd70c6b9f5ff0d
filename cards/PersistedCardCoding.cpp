#include "cards/PersistedCardCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <array>
#include <cmath>

namespace lumenfold {
namespace {

constexpr QLatin1String idKey("id");
constexpr QLatin1String editorSourceIdKey("editorSourceId");
constexpr QLatin1String isPinnedKey("isPinned");
constexpr QLatin1String frameKey("frame");

bool isFinite(const Rect &rect)
{
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) && std::isfinite(rect.height);
}

bool isAbsent(const QJsonValue &value)
{
    return value.isUndefined() || value.isNull();
}

std::optional<std::array<double, 2>> decodePair(const QJsonValue &value)
{
    const QJsonArray pair = value.toArray();
    if (pair.size() != 2 || !pair[0].isDouble() || !pair[1].isDouble()) {
        return std::nullopt;
    }
    return std::array{pair[0].toDouble(), pair[1].toDouble()};
}

std::optional<Rect> decodeRect(const QJsonValue &value)
{
    const QJsonArray parts = value.toArray();
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const auto origin = decodePair(parts[0]);
    const auto size = decodePair(parts[1]);
    if (!origin || !size) {
        return std::nullopt;
    }
    const auto [x, y] = *origin;
    const auto [width, height] = *size;
    const Rect rect{x, y, width, height};
    return isFinite(rect) ? std::optional(rect) : std::nullopt;
}

std::optional<PersistedCard> decodeCard(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const QJsonValue id = object[idKey];
    const QJsonValue isPinned = object[isPinnedKey];
    if (!id.isString() || !isPinned.isBool()) {
        return std::nullopt;
    }
    PersistedCard card{.id = id.toString(), .isPinned = isPinned.toBool()};
    if (const QJsonValue sourceId = object[editorSourceIdKey]; !isAbsent(sourceId)) {
        if (!sourceId.isString()) {
            return std::nullopt;
        }
        card.editorSourceId = sourceId.toString();
    }
    if (const QJsonValue frame = object[frameKey]; !isAbsent(frame)) {
        card.frame = decodeRect(frame);
        if (!card.frame) {
            return std::nullopt;
        }
    }
    return card;
}

} // namespace

std::optional<QByteArray> encodePersistedCards(const std::vector<PersistedCard> &cards)
{
    QJsonArray entries;
    for (const PersistedCard &card : cards) {
        QJsonObject entry{{idKey, card.id}, {isPinnedKey, card.isPinned}};
        if (card.editorSourceId) {
            entry.insert(editorSourceIdKey, *card.editorSourceId);
        }
        if (card.frame) {
            if (!isFinite(*card.frame)) {
                return std::nullopt;
            }
            entry.insert(frameKey, QJsonArray{QJsonArray{card.frame->x, card.frame->y},
                                              QJsonArray{card.frame->width, card.frame->height}});
        }
        entries.append(entry);
    }
    return QJsonDocument(entries).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<PersistedCard>> decodePersistedCards(const QByteArray &manifest)
{
    if (manifest.size() > maximumManifestBytes) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(manifest);
    if (!document.isArray()) {
        return std::nullopt;
    }
    const QJsonArray entries = document.array();
    std::vector<PersistedCard> cards;
    cards.reserve(static_cast<std::size_t>(entries.size()));
    for (const QJsonValue entry : entries) {
        std::optional<PersistedCard> card = decodeCard(entry);
        if (!card) {
            return std::nullopt;
        }
        cards.push_back(std::move(*card));
    }
    return cards;
}

} // namespace lumenfold
