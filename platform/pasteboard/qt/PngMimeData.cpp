#include "platform/pasteboard/qt/PngMimeData.h"

#include <utility>

namespace lumenfold {
namespace {

QString pngFormat()
{
    return QStringLiteral("image/png");
}

} // namespace

PngMimeData::PngMimeData(QByteArray png) : m_png(std::move(png)) {}

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
    return format == pngFormat() ? QVariant(m_png) : QVariant();
}

} // namespace lumenfold
