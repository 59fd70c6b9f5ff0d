#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Who has written a feed. Its last line is a comment with an Ed25519 signature of every byte before that line:
/// `<!-- ed25519: <base64> -->`. So nothing of a feed is looked at, let alone believed, before it is known to be
/// genuine.
namespace lumenfold {

inline constexpr qsizetype ed25519PublicKeyBytes = 32;

/// The public key that a base64 text stands for; nothing for any other text.
[[nodiscard]] std::optional<QByteArray> readPublicKey(QByteArrayView base64);

/// The signed part of the feed; nothing when there is no signature, or when it is not by the holder of the key.
[[nodiscard]] std::optional<QByteArray> genuinePart(const QByteArray &feed, const QByteArray &publicKey);

} // namespace lumenfold
