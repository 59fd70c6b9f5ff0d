#include "cards/CardShadow.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lumenfold {
namespace {

/// Beyond three standard deviations a Gaussian is nothing.
int reachOf(double deviation)
{
    return static_cast<int>(std::ceil(3 * deviation));
}

constexpr int boxes = 3;

/// How far three boxes reach to each side that, one after the other, blur like a Gaussian to the eye. A box costs the
/// same however wide it is, and shadows are blurred while somebody waits for a window.
std::array<int, boxes> boxReaches(double deviation)
{
    const double variance = deviation * deviation;
    const int narrow = (static_cast<int>(std::sqrt(12 * variance / boxes + 1)) - 1) / 2;
    const int width = 2 * narrow + 1;
    // So many of the narrow ones, and wider ones for the rest, have the variance together.
    const auto narrowOnes =
        static_cast<int>(std::lround((12 * variance - boxes * (width * width + 4 * width + 3)) / (-4.0 * width - 4)));
    std::array<int, boxes> reaches{};
    for (int box = 0; box < boxes; ++box) {
        reaches[static_cast<std::size_t>(box)] = box < narrowOnes ? narrow : narrow + 1;
    }
    return reaches;
}

/// Every place becomes the mean of those around it; there is nothing beyond the ends.
void boxBlur(std::vector<float> &line, int reach, std::vector<float> &spare)
{
    const auto count = static_cast<int>(line.size());
    const auto at = [&line](int place) -> float & { return line[static_cast<std::size_t>(place)]; };
    float sum = 0;
    for (int place = 0; place < std::min(reach, count); ++place) {
        sum += at(place);
    }
    for (int place = 0; place < count; ++place) {
        if (place + reach < count) {
            sum += at(place + reach);
        }
        if (place - reach - 1 >= 0) {
            sum -= at(place - reach - 1);
        }
        spare[static_cast<std::size_t>(place)] = sum / static_cast<float>(2 * reach + 1);
    }
    line.swap(spare);
}

/// One direction of the blur: blurs each row and turns the picture, so that the second pass does the columns.
QImage blurredAndTurned(const QImage &alpha, const std::array<int, boxes> &reaches)
{
    QImage turned(alpha.height(), alpha.width(), QImage::Format_Alpha8);
    uchar *const out = turned.bits();
    const qsizetype stride = turned.bytesPerLine();
    std::vector<float> line(static_cast<std::size_t>(alpha.width()));
    std::vector<float> spare(line.size());
    for (int y = 0; y < alpha.height(); ++y) {
        const uchar *row = alpha.constScanLine(y);
        std::copy(row, row + alpha.width(), line.begin());
        for (const int reach : reaches) {
            boxBlur(line, reach, spare);
        }
        for (int x = 0; x < alpha.width(); ++x) {
            const float value = std::clamp(line[static_cast<std::size_t>(x)], 0.0F, 255.0F);
            out[x * stride + y] = static_cast<uchar>(std::lround(value));
        }
    }
    return turned;
}

/// The shadow of the smallest rectangle that has one straight pixel between its corners: nine patches whose middle ones
/// can be stretched to any size.
struct ShadowTile {
    CardShadow kind;
    double scale = 1;
    QImage picture;
    /// Device pixels from the tile's edge to its straight middle, and from its edge to the caster's.
    int border = 0;
    int outside = 0;
};

/// The shadow of a rectangle of that many device pixels, with as much room around it as the blur reaches.
QImage blurredShape(QSize caster, const CardShadow &kind, double scale)
{
    const double deviation = kind.blurRadius / 2 * scale;
    const int reach = reachOf(deviation);
    const double radius = kind.cornerRadius * scale;

    QImage shape(caster + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(shape.rect()).adjusted(reach, reach, -reach, -reach), radius, radius);
    painter.end();

    const std::array<int, boxes> reaches = boxReaches(deviation);
    const QImage alpha =
        blurredAndTurned(blurredAndTurned(shape.convertToFormat(QImage::Format_Alpha8), reaches), reaches);
    QImage picture(shape.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); ++y) {
        const uchar *row = alpha.constScanLine(y);
        auto *shaded = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            shaded[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(row[x] * kind.opacity)));
        }
    }
    return picture;
}

ShadowTile makeTile(const CardShadow &kind, double scale)
{
    const int reach = reachOf(kind.blurRadius / 2 * scale);
    const int border = 2 * reach + static_cast<int>(std::ceil(kind.cornerRadius * scale));
    const int caster = 2 * (border - reach) + 1;
    return {kind, scale, blurredShape({caster, caster}, kind, scale), border, reach};
}

const ShadowTile &tileFor(const CardShadow &kind, double scale)
{
    // A card and a button of it, on screens of two scales.
    static std::vector<ShadowTile> tiles;
    const auto found =
        std::ranges::find_if(tiles, [&](const ShadowTile &tile) { return tile.kind == kind && tile.scale == scale; });
    return found != tiles.end() ? *found : tiles.emplace_back(makeTile(kind, scale));
}

struct SmallShadow {
    CardShadow kind;
    double scale = 1;
    /// Of the caster, in device pixels.
    QSize size;
    QImage picture;
};

const QImage &smallShadowFor(QSize size, const CardShadow &kind, double scale)
{
    // A few kinds of buttons; those whose size follows the card's come and go.
    constexpr std::size_t mostKept = 16;
    static std::vector<SmallShadow> shadows;
    const auto found = std::ranges::find_if(shadows, [&](const SmallShadow &each) {
        return each.size == size && each.kind == kind && each.scale == scale;
    });
    if (found != shadows.end()) {
        return found->picture;
    }
    if (shadows.size() == mostKept) {
        shadows.erase(shadows.begin());
    }
    shadows.push_back({kind, scale, size, blurredShape(size, kind, scale)});
    return shadows.back().picture;
}

} // namespace

void paintSmallShadow(QPainter &painter, const QRectF &caster, const CardShadow &shadow)
{
    CardShadow kind = shadow;
    kind.offset = {};
    const double scale = painter.device()->devicePixelRatioF();
    const QImage &picture = smallShadowFor((caster.size() * scale).toSize(), kind, scale);
    const double outside = reachOf(kind.blurRadius / 2 * scale) / scale;
    painter.drawImage(QRectF(caster.topLeft() + shadow.offset - QPointF(outside, outside), picture.size() / scale),
                      picture);
}

void paintShadow(QPainter &painter, const QRectF &caster, const CardShadow &shadow)
{
    CardShadow kind = shadow;
    kind.offset = {};
    const ShadowTile &tile = tileFor(kind, painter.device()->devicePixelRatioF());
    const double outside = tile.outside / tile.scale;
    const double border = tile.border / tile.scale;
    const QRectF target = caster.translated(shadow.offset).adjusted(-outside, -outside, outside, outside);

    const double side = tile.picture.width();
    const std::array sourceEdges{0.0, double(tile.border), double(tile.border) + 1, side};
    const auto edges = [border](double from, double to) {
        const double inner = std::min(border, (to - from) / 2);
        return std::array{from, from + inner, to - inner, to};
    };
    const std::array columns = edges(target.left(), target.right());
    const std::array rows = edges(target.top(), target.bottom());
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            painter.drawImage(QRectF(QPointF(columns[column], rows[row]), QPointF(columns[column + 1], rows[row + 1])),
                              tile.picture,
                              QRectF(QPointF(sourceEdges[column], sourceEdges[row]),
                                     QPointF(sourceEdges[column + 1], sourceEdges[row + 1])));
        }
    }
}

} // namespace lumenfold
