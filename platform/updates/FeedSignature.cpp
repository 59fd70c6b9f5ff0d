#include "platform/updates/FeedSignature.h"

#include <sodium.h>

namespace lumenfold {
namespace {

static_assert(ed25519PublicKeyBytes == crypto_sign_ed25519_PUBLICKEYBYTES);

const QByteArrayView opening = "<!-- ed25519: ";
const QByteArrayView closing = " -->";

const unsigned char *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

/// Bytes of exactly that length; an empty array for any other text.
QByteArray decoded(QByteArrayView base64, qsizetype length)
{
    const auto result = QByteArray::fromBase64Encoding(base64.toByteArray(), QByteArray::AbortOnBase64DecodingErrors);
    return result && result.decoded.size() == length ? result.decoded : QByteArray();
}

} // namespace

std::optional<QByteArray> readPublicKey(QByteArrayView base64)
{
    QByteArray key = decoded(base64.trimmed(), ed25519PublicKeyBytes);
    if (key.isEmpty()) {
        return std::nullopt;
    }
    return key;
}

std::optional<QByteArray> genuinePart(const QByteArray &feed, const QByteArray &publicKey)
{
    const qsizetype end = feed.lastIndexOf(opening);
    if (end < 0 || publicKey.size() != ed25519PublicKeyBytes) {
        return std::nullopt;
    }
    const QByteArrayView lastLine = QByteArrayView(feed).sliced(end + opening.size()).trimmed();
    if (!lastLine.endsWith(closing)) {
        return std::nullopt;
    }
    const QByteArray signature = decoded(lastLine.chopped(closing.size()), crypto_sign_ed25519_BYTES);
    if (signature.isEmpty() || sodium_init() < 0) {
        return std::nullopt;
    }
    QByteArray part = feed.left(end);
    const int status = crypto_sign_ed25519_verify_detached(
        bytesOf(signature), bytesOf(part), static_cast<unsigned long long>(part.size()), bytesOf(publicKey));
    if (status != 0) {
        return std::nullopt;
    }
    return part;
}

} // namespace lumenfold
