#include "editor/bridge/DataUrl.h"

#include "editor/bridge/Base64.h"

#include <QList>
#include <QLocale>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace lumenfold {
namespace {

constexpr QByteArrayView dataUrlScheme = "data:";

/// Decodes in place what nobody else holds.
std::optional<QByteArray> decoded(QByteArray text)
{
    // In an address that went through somebody's hands the signs of base64 may be escaped.
    if (text.contains('%')) {
        text = QByteArray::fromPercentEncoding(text);
    }
    return decodeBase64(std::move(text));
}

QString extensionFor(const QString &mimeType)
{
    struct Kind {
        QStringView mimeType;
        QStringView extension;
    };
    static constexpr std::array kinds{
        Kind{u"image/png", u"png"},       Kind{u"image/jpeg", u"jpg"}, Kind{u"image/jpg", u"jpg"},
        Kind{u"image/webp", u"webp"},     Kind{u"image/gif", u"gif"},  Kind{u"image/svg+xml", u"svg"},
        Kind{u"application/pdf", u"pdf"},
    };
    for (const Kind &kind : kinds) {
        if (mimeType == kind.mimeType) {
            return kind.extension.toString();
        }
    }
    return QStringLiteral("png");
}

} // namespace

QByteArray pngDataURL(const QByteArray &png)
{
    return "data:image/png;base64," + png.toBase64();
}

tl::expected<QByteArray, ExportTrouble> readExport(QByteArray dataURL)
{
    const qsizetype comma = dataURL.indexOf(',');
    if (comma < 0) {
        return tl::unexpected(ExportTrouble::noComma);
    }
    std::optional<QByteArray> bytes = decoded(std::move(dataURL.remove(0, comma + 1)));
    if (!bytes) {
        return tl::unexpected(ExportTrouble::undecodable);
    }
    return *std::move(bytes);
}

tl::expected<EditorDownload, DownloadTrouble> readDownload(QByteArrayView dataURL)
{
    const qsizetype comma = dataURL.indexOf(',');
    if (comma < 0 ||
        dataURL.first(std::min(dataUrlScheme.size(), dataURL.size())).compare(dataUrlScheme, Qt::CaseInsensitive) !=
            0) {
        return tl::unexpected(DownloadTrouble::malformed);
    }
    const QByteArray header = dataURL.sliced(dataUrlScheme.size(), comma - dataUrlScheme.size()).toByteArray();
    const QList<QByteArray> parts = header.split(';');
    if (!parts.sliced(1).contains("base64")) {
        return tl::unexpected(DownloadTrouble::malformed);
    }
    std::optional<QByteArray> bytes = decoded(dataURL.sliced(comma + 1).toByteArray());
    if (!bytes) {
        return tl::unexpected(DownloadTrouble::undecodable);
    }
    const QString mimeType = QString::fromUtf8(parts.first()).toLower();
    return EditorDownload{mimeType.isEmpty() ? QStringLiteral("application/octet-stream") : mimeType,
                          *std::move(bytes)};
}

QString downloadName(const QDateTime &time, const QString &mimeType)
{
    return QStringLiteral("LumenFold-%1.%2")
        .arg(QLocale::c().toString(time.toLocalTime(), u"yyyy-MM-dd-HHmmss"), extensionFor(mimeType));
}

} // namespace lumenfold
