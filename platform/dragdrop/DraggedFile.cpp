#include "platform/dragdrop/DraggedFile.h"

#include <QUrl>

#include <utility>

namespace lumenfold {
namespace {

const QString addressesFormat = QStringLiteral("text/uri-list");
const QString pngFormat = QStringLiteral("image/png");

/// The toolkit hands dropped data over in one piece, and the server takes no piece larger than 16 MB.
constexpr qsizetype largestPiece = 15 * 1024 * 1024;

} // namespace

DraggedFile::DraggedFile(const QString &path, QByteArray png)
    : m_addresses(QUrl::fromLocalFile(path).toEncoded() + "\r\n"), m_png(std::move(png))
{
}

QStringList DraggedFile::formats() const
{
    QStringList formats{addressesFormat};
    if (!m_png.isEmpty() && m_png.size() <= largestPiece) {
        formats.append(pngFormat);
    }
    return formats;
}

bool DraggedFile::hasFormat(const QString &format) const
{
    return formats().contains(format);
}

QVariant DraggedFile::retrieveData(const QString &format, QMetaType) const
{
    if (!hasFormat(format)) {
        return {};
    }
    return format == pngFormat ? m_png : m_addresses;
}

} // namespace lumenfold
