/// Feeds the readers of what the editor's page says: messages, origins, exports and downloads. Whatever
/// comes, a message is as long as it says, and only the editor's own origin is trusted.
#include "editor/bridge/Base64.h"
#include "editor/bridge/DataUrl.h"
#include "editor/bridge/EditorOrigin.h"
#include "editor/bridge/PageMessages.h"

#include <QJsonDocument>

#include <cstdint>
#include <cstdlib>

namespace {

using namespace lumenfold;

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

void feedMessages(const QByteArray &text)
{
    const auto message = readPageMessage(QJsonDocument::fromJson(text).object());
    if (message) {
        require(message->length <= maximumMessageLength);
        require(!message->text || (message->isText && message->text->size() == message->length));
    }
}

void feedBase64(const QByteArray &text)
{
    const auto expected =
        QByteArray::fromBase64Encoding(text, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    const auto decoded = decodeBase64(text);
    require(decoded.has_value() == (expected && text.size() % 4 == 0));
    require(!decoded || *decoded == expected.decoded);
}

void feedOrigins(const QByteArray &text)
{
    const QString words = QString::fromUtf8(text);
    static const QUrl base(QStringLiteral("https://www.example.org:8443"));
    const SecurityOrigin origin = readSecurityOrigin(words);
    require(isTrustedOrigin(origin, base) ==
            (origin == SecurityOrigin{QStringLiteral("https"), QStringLiteral("www.example.org"), 8443}));
    const QUrl address(words);
    if (isTrustedAddress(address, base)) {
        require(address.host() == u"www.example.org" && address.port() == 8443 && address.scheme() == u"https");
    }
    const QString asBase = editorOrigin(address);
    require(!asBase.contains(u'\'') && !asBase.contains(u'\\') && !asBase.contains(u'\n'));
    // A page of that origin is trusted with it, and says it in the same way.
    if (!asBase.isEmpty()) {
        require(isTrustedAddress(QUrl(asBase), address));
    }
}

void feedDataURLs(const QByteArray &text)
{
    if (const auto bytes = readExport(text)) {
        require(bytes->size() <= text.size());
    }
    if (const auto download = readDownload(text)) {
        require(!download->mimeType.isEmpty() && download->mimeType == download->mimeType.toLower());
        require(readDownload("data:;base64," + download->bytes.toBase64())->bytes == download->bytes);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    feedMessages(input);
    feedOrigins(input);
    feedDataURLs(input);
    feedBase64(input);
    return 0;
}
