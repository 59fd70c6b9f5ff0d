#include "app/menubar/MenuBarImages.h"

#include <QDir>
#include <QFile>
#include <QPainter>

/// Outside every namespace, as the toolkit wants it. A static library's resources are not there by themselves.
static void makeImagesAvailable()
{
    Q_INIT_RESOURCE(menubar);
}

namespace lumenfold {
namespace {

QByteArray drawingAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString menuBarImageFolder()
{
    makeImagesAvailable();
    return QStringLiteral(":/lumenfold/menubar/images");
}

StatusImage menuBarImage(const QString &folder)
{
    QByteArray drawing = drawingAt(QDir(folder).filePath(QStringLiteral("LumenFoldMenuBarTemplate.svg")));
    if (drawing.isEmpty()) {
        drawing = drawingAt(QDir(menuBarImageFolder()).filePath(QStringLiteral("scissors.svg")));
    }
    return {.drawing = drawing, .isTemplate = true, .accessibilityDescription = QStringLiteral("LumenFold")};
}

QImage updateDotImage()
{
    constexpr int side = 14;
    constexpr int scale = 2;
    constexpr QRectF dot{3.5, 3.5, 7, 7};
    // The system's orange.
    QColor orange(255, 149, 0);
    orange.setAlphaF(0.92F);
    QImage image(side * scale, side * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(orange);
    painter.drawEllipse(dot);
    return image;
}

} // namespace lumenfold
