#include "app/theme/Symbol.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <vector>

/// Outside every namespace, as the toolkit wants it. A static library's resources are not there by themselves.
static void makeSymbolsAvailable()
{
    Q_INIT_RESOURCE(symbols);
}

namespace lumenfold {
namespace {

struct Rendering {
    Symbol symbol;
    /// Device pixels.
    int side;
    QRgb color;
    QImage picture;
};

QString nameOf(Symbol symbol)
{
    switch (symbol) {
    case Symbol::xmark:
        return QStringLiteral("xmark");
    case Symbol::xmarkCircleFill:
        return QStringLiteral("xmark.circle.fill");
    case Symbol::pinFill:
        return QStringLiteral("pin.fill");
    case Symbol::chevronUp:
        return QStringLiteral("chevron.up");
    case Symbol::chevronDown:
        return QStringLiteral("chevron.down");
    case Symbol::checkmarkCircleFill:
        return QStringLiteral("checkmark.circle.fill");
    case Symbol::magnifyingGlass:
        return QStringLiteral("magnifyingglass");
    case Symbol::photo:
        return QStringLiteral("photo");
    case Symbol::arrowUpRightSquare:
        return QStringLiteral("arrow.up.right.square");
    case Symbol::exclamationmarkTriangleFill:
        return QStringLiteral("exclamationmark.triangle.fill");
    case Symbol::gearshape:
        return QStringLiteral("gearshape");
    case Symbol::squareOnSquare:
        return QStringLiteral("square.on.square");
    case Symbol::personCircle:
        return QStringLiteral("person.circle");
    case Symbol::arrowUturnBackward:
        return QStringLiteral("arrow.uturn.backward");
    case Symbol::folder:
        return QStringLiteral("folder");
    case Symbol::personCropCircleBadgeExclamationmark:
        return QStringLiteral("person.crop.circle.badge.exclamationmark");
    case Symbol::checkmarkSealFill:
        return QStringLiteral("checkmark.seal.fill");
    }
    return {};
}

QImage render(Symbol symbol, int side, const QColor &color)
{
    makeSymbolsAvailable();
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QSvgRenderer drawing(QStringLiteral(":/lumenfold/symbols/%1.svg").arg(nameOf(symbol)));
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

const QImage &rendering(Symbol symbol, int side, const QColor &color)
{
    // A handful of symbols, in two appearances and on screens of two scales.
    static std::vector<Rendering> made;
    const auto found = std::ranges::find_if(made, [&](const Rendering &each) {
        return each.symbol == symbol && each.side == side && each.color == color.rgba();
    });
    if (found != made.end()) {
        return found->picture;
    }
    made.push_back({symbol, side, color.rgba(), render(symbol, side, color)});
    return made.back().picture;
}

} // namespace

void paintSymbol(QPainter &painter, Symbol symbol, QPointF center, double pointSize, const QColor &color)
{
    const double scale = painter.device()->devicePixelRatioF();
    // As many pixels as the middle has: an odd number around the middle of a pixel, an even one around an edge.
    const bool isMidPixel = std::fmod(std::round(center.x() * scale * 2), 2) != 0;
    int side = static_cast<int>(std::lround(drawnSide(pointSize) * scale));
    side += (side % 2 == 1) == isMidPixel ? 0 : 1;
    const QPointF corner(std::round(center.x() * scale - side / 2.0) / scale,
                         std::round(center.y() * scale - side / 2.0) / scale);
    painter.drawImage(QRectF(corner, QSizeF(side, side) / scale), rendering(symbol, side, color));
}

QIcon symbolIcon(Symbol symbol, int side, const QColor &color)
{
    QIcon icon;
    for (const int scale : {1, 2, 3}) {
        QPixmap pixmap = QPixmap::fromImage(rendering(symbol, side * scale, color));
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace lumenfold
