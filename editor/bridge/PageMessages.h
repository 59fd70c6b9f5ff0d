#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

/// What the editor's page says, as it comes in: in pieces, so that no message keeps the main thread for long.
namespace lumenfold {

/// A message may have so many characters: the picture of an 8K screen that cannot be compressed fits.
inline constexpr qsizetype maximumMessageLength = qsizetype{192} * 1024 * 1024;

/// One piece of one message.
struct MessagePiece {
    /// A document of the page, by a name that it got at random.
    QString document{};
    /// Counts the messages of the document.
    int message = 0;
    /// Counts the pieces of the message.
    int index = 0;
    /// Of the whole message, in characters.
    qsizetype length = 0;
    /// For whom it is.
    QString name{};
    /// The origin of the document, as the engine knows it.
    QString origin{};
    /// Nothing if the message is no text.
    std::optional<QString> text{};
    bool isLast = false;
};

/// Nothing if it is not what our own script in the page sends.
[[nodiscard]] std::optional<MessagePiece> readMessagePiece(const QJsonObject &json);

struct PageMessage {
    QString name;
    /// Nothing if the message is no text.
    std::optional<QByteArray> body;
};

/// Puts messages together, one after the other. A piece that does not fit gives up what was being put together.
class MessageAssembly {
public:
    enum class Outcome {
        /// More pieces are wanted.
        incomplete,
        complete,
        /// It does not fit or is too long; the rest of the message is not wanted.
        refused,
    };

    [[nodiscard]] Outcome add(const MessagePiece &piece);
    /// The message, after `complete`.
    [[nodiscard]] PageMessage take();
    void forget();

private:
    [[nodiscard]] bool follows(const MessagePiece &piece) const;

    /// The one before the piece that is expected; nothing at the beginning of a message.
    std::optional<MessagePiece> m_previous;
    std::optional<QByteArray> m_body;
    qsizetype m_characters = 0;
};

} // namespace lumenfold
