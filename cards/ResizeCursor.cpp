#include "cards/ResizeCursor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>
#include <cmath>
#include <map>
#include <utility>

namespace lumenfold {
namespace {

enum class Diagonal { northWestSouthEast, northEastSouthWest };

/// The glyph's side and the room around it for the rim, in points.
constexpr double glyphSize = 15;
constexpr double rimMargin = 3;
constexpr double canvasSize = glyphSize + 2 * rimMargin;

/// Two arrowheads away from each other along the diagonal from the upper left to the lower right.
QPainterPath glyph(Diagonal diagonal)
{
    constexpr double near = 1.5;
    constexpr double far = glyphSize - near;
    constexpr double barb = 5;
    QPainterPath path;
    path.moveTo(near, near + barb);
    path.lineTo(near, near);
    path.lineTo(near + barb, near);
    path.moveTo(near, near);
    path.lineTo(far, far);
    path.moveTo(far, far - barb);
    path.lineTo(far, far);
    path.lineTo(far - barb, far);
    if (diagonal == Diagonal::northEastSouthWest) {
        path = QTransform(-1, 0, 0, 1, glyphSize, 0).map(path);
    }
    return path;
}

QCursor makeResizeCursor(Diagonal diagonal, double devicePixelRatio)
{
    const int pixels = static_cast<int>(std::lround(canvasSize * devicePixelRatio));
    QPixmap canvas(pixels, pixels);
    canvas.setDevicePixelRatio(devicePixelRatio);
    canvas.fill(Qt::transparent);

    const QPainterPath path = glyph(diagonal);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto draw = [&](QPointF offset, const QColor &colour) {
        painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(path.translated(offset));
    };
    // Around the black glyph at (3, 3), in eight directions: a rim of 1.2 points.
    constexpr std::array<std::pair<double, double>, 8> rim{
        {{1.8, 3}, {4.2, 3}, {3, 1.8}, {3, 4.2}, {2, 2}, {4, 2}, {2, 4}, {4, 4}}};
    for (const auto &[x, y] : rim) {
        draw({x, y}, Qt::white);
    }
    draw({rimMargin, rimMargin}, Qt::black);
    painter.end();
    // The hot spot is the middle of the picture, which is what no position means. On X11 it counts device pixels, and
    // so must the picture, or the toolkit takes the middle in points.
    canvas.setDevicePixelRatio(1);
    return QCursor(canvas);
}

} // namespace

QCursor resizeCursor(PreviewResizeCorner corner, double devicePixelRatio)
{
    const bool isRising = corner == PreviewResizeCorner::topRight || corner == PreviewResizeCorner::bottomLeft;
    const auto diagonal = isRising ? Diagonal::northEastSouthWest : Diagonal::northWestSouthEast;
    // Never destroyed: the toolkit, which the cursors belong to, goes first.
    static auto &made = *new std::map<std::pair<Diagonal, double>, QCursor>;
    const auto key = std::pair(diagonal, devicePixelRatio);
    const auto found = made.find(key);
    return found != made.end() ? found->second
                               : made.emplace(key, makeResizeCursor(diagonal, devicePixelRatio)).first->second;
}

} // namespace lumenfold
