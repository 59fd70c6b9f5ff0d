#include "cards/face/RoundedRegion.h"

#include <QList>

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

/// The first pixel whose middle is not before that place.
int firstPixelFrom(double place)
{
    return static_cast<int>(std::ceil(place - 0.5));
}

} // namespace

QRegion roundedRegion(const QRectF &rect, double radius, double scale)
{
    const QRectF area(rect.topLeft() * scale, rect.size() * scale);
    const double round = std::clamp(radius * scale, 0.0, std::min(area.width(), area.height()) / 2);
    const int top = firstPixelFrom(area.top());
    const int bottom = firstPixelFrom(area.bottom());
    QList<QRect> rows;
    for (int y = top; y < bottom; ++y) {
        const double middle = y + 0.5;
        const double beyond = std::max({area.top() + round - middle, middle - (area.bottom() - round), 0.0});
        const double inset = round - std::sqrt(std::max(round * round - beyond * beyond, 0.0));
        const int left = firstPixelFrom(area.left() + inset);
        const int right = firstPixelFrom(area.right() - inset);
        if (left >= right) {
            continue;
        }
        if (!rows.isEmpty() && rows.last().left() == left && rows.last().right() == right - 1) {
            rows.last().setBottom(y);
        } else {
            rows.append(QRect(left, y, right - left, 1));
        }
    }
    QRegion region;
    region.setRects(rows.constData(), static_cast<int>(rows.size()));
    return region;
}

} // namespace lumenfold
