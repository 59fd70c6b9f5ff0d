#include "tests/support/updates/SignedFeeds.h"

#include <sodium.h>

#include <stdexcept>

namespace lumenfold::test {
namespace {

unsigned char *bytesOf(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

} // namespace

FeedSigner::FeedSigner()
    : m_publicKey(crypto_sign_ed25519_PUBLICKEYBYTES, '\0'), m_secretKey(crypto_sign_ed25519_SECRETKEYBYTES, '\0')
{
    if (sodium_init() < 0 || crypto_sign_ed25519_keypair(bytesOf(m_publicKey), bytesOf(m_secretKey)) != 0) {
        throw std::runtime_error("no keys can be made");
    }
}

QByteArray FeedSigner::sign(const QByteArray &feed) const
{
    QByteArray signature(crypto_sign_ed25519_BYTES, '\0');
    crypto_sign_ed25519_detached(bytesOf(signature), nullptr, reinterpret_cast<const unsigned char *>(feed.constData()),
                                 static_cast<unsigned long long>(feed.size()),
                                 reinterpret_cast<const unsigned char *>(m_secretKey.constData()));
    return feed + "<!-- ed25519: " + signature.toBase64() + " -->\n";
}

QByteArray feedOf(const QList<FeedItem> &items)
{
    QByteArray feed = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                      "<rss version=\"2.0\" xmlns:lumenfold=\"urn:lumenfold:appcast\">\n"
                      "<channel><title>LumenFold</title>\n";
    for (const FeedItem &item : items) {
        feed += "<item><title>LumenFold " + item.version + "</title>\n<link>" + item.page + "</link>\n";
        if (!item.minimumSystemVersion.isEmpty()) {
            feed +=
                "<lumenfold:minimumSystemVersion>" + item.minimumSystemVersion + "</lumenfold:minimumSystemVersion>\n";
        }
        feed += "<description>" + item.notes + "</description>\n<enclosure url=\"" + item.file +
                "\" length=\"1834062\" type=\"application/vnd.debian.binary-package\" lumenfold:version=\"" +
                item.version + "\"/></item>\n";
    }
    return feed + "</channel></rss>\n";
}

} // namespace lumenfold::test
