#include "platform/statusitem/notifier/NotifierTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

#include <array>

namespace lumenfold {
namespace {

/// What panels ask for, at one and at two pixels per point.
constexpr std::array panelSizes{16, 22, 24, 32, 44, 48, 64};

NotifierPixmap pixmapOf(const QImage &painted)
{
    const QImage image = painted.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{.width = image.width(), .height = image.height(), .pixels = {}};
    pixmap.pixels.reserve(image.sizeInBytes());
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const quint32 pixel = qToBigEndian(row[x]);
            pixmap.pixels.append(reinterpret_cast<const char *>(&pixel), sizeof pixel);
        }
    }
    return pixmap;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerNotifierTypes()
{
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

NotifierPixmaps notifierPixmaps(const StatusIcon &icon, const QColor &templateColor)
{
    NotifierPixmaps pixmaps;
    for (const int side : panelSizes) {
        pixmaps.append(pixmapOf(paintStatusIcon(icon, side, templateColor)));
    }
    return pixmaps;
}

} // namespace lumenfold
