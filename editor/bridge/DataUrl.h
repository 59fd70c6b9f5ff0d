#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <tl/expected.hpp>

/// Data addresses ("data:image/png;base64,…"), by which pictures go to the editor's page and come back. Text is ASCII;
/// whatever else a page puts there makes it broken.
namespace lumenfold {

/// A picture as the page gets it.
[[nodiscard]] QByteArray pngDataURL(const QByteArray &png);

enum class ExportTrouble {
    /// Not even the beginnings of a data address; nothing is said of it.
    noComma,
    undecodable,
};

/// The bytes of a picture that the page has exported: what stands behind the first comma, decoded.
[[nodiscard]] tl::expected<QByteArray, ExportTrouble> readExport(QByteArray dataURL);

/// A file that the page offers for download.
struct EditorDownload {
    /// Lower case; "application/octet-stream" where the address says none.
    QString mimeType;
    QByteArray bytes;
};

enum class DownloadTrouble {
    /// No data address, no comma, or not base64 by its own word.
    malformed,
    undecodable,
};

[[nodiscard]] tl::expected<EditorDownload, DownloadTrouble> readDownload(QByteArrayView dataURL);

/// "LumenFold-2026-11-21-172530.png": local time, ASCII digits in every language. What is no known picture and no PDF
/// is offered as PNG.
[[nodiscard]] QString downloadName(const QDateTime &time, const QString &mimeType);

} // namespace lumenfold
