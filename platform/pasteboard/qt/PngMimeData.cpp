#include "platform/pasteboard/qt/PngMimeData.h"

#include <utility>

namespace lumenfold {
namespace {

QString pngFormat()
{
    return QStringLiteral("image/png");
}

} // namespace

PngMimeData::PngMimeData(std::optional<Image> image) : m_image(std::move(image)) {}

void PngMimeData::setPng(QByteArray png)
{
    m_png = std::move(png);
}

QStringList PngMimeData::formats() const
{
    return {pngFormat()};
}

bool PngMimeData::hasFormat(const QString &format) const
{
    return format == pngFormat();
}

QVariant PngMimeData::retrieveData(const QString &format, QMetaType) const
{
    if (format != pngFormat()) {
        return {};
    }
    const std::optional<QByteArray> png = m_png || !m_image ? m_png : m_image->pngData();
    return png ? QVariant(*png) : QVariant();
}

} // namespace lumenfold
