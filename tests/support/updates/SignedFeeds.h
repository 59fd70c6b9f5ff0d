#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

/// Feeds of updates, and who signs them.
namespace lumenfold::test {

/// A pair of keys that nobody else has.
class FeedSigner {
public:
    FeedSigner();

    [[nodiscard]] const QByteArray &publicKey() const { return m_publicKey; }
    /// With the line at its end that signs it.
    [[nodiscard]] QByteArray sign(const QByteArray &feed) const;

private:
    QByteArray m_publicKey;
    QByteArray m_secretKey;
};

struct FeedItem {
    QByteArray version;
    QByteArray minimumSystemVersion{};
    /// Markdown, without anything that XML would take for its own.
    QByteArray notes = "What is new.";
    QByteArray page = "https://www.lumenfold.example/download";
    QByteArray file = "https://www.lumenfold.example/lumenfold.deb";
};

/// An honest feed, not signed yet.
[[nodiscard]] QByteArray feedOf(const QList<FeedItem> &items);

} // namespace lumenfold::test
