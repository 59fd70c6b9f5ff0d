#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

/// What the editor's page says, as our script in it (module/courier.js) passes it on.
namespace lumenfold {

/// A message may have so many characters: the picture of an 8K screen that cannot be compressed fits.
inline constexpr qsizetype maximumMessageLength = qsizetype{192} * 1024 * 1024;

struct PageMessage {
    /// A document of the page, by a name that it got at random.
    QString document{};
    /// Counts the messages of the document.
    int number = 0;
    /// For whom it is.
    QString name{};
    /// The origin of the document, as the engine knew it when the message was posted.
    QString origin{};
    /// Whether it is a text at all.
    bool isText = false;
    /// In characters.
    qsizetype length = 0;
    /// Only if it is a short one; a long one is to be fetched.
    std::optional<QString> text{};
};

/// Nothing if it is not what our own script in the page sends, or is longer than a message may be.
[[nodiscard]] std::optional<PageMessage> readPageMessage(const QJsonObject &json);

} // namespace lumenfold
