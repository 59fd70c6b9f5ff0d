#include "tests/support/desktop/CardFrames.h"

#include <algorithm>
#include <cmath>

namespace lumenfold::test {
namespace {

constexpr double margin = 24;
constexpr double gap = 12;
constexpr double layerRise = 20;
constexpr double layerShrinking = 0.06;
constexpr int deepestLayer = 2;

} // namespace

QRect CardColumn::slot(int number) const
{
    return windowOf(margin, margin + number * (cardHeight + gap), cardWidth, cardHeight);
}

QRect CardColumn::overflowDeck(int depth) const
{
    const int layer = std::min(depth, deepestLayer);
    const double shrinking = 1 - layerShrinking * layer;
    const double width = cardWidth * shrinking;
    return windowOf(margin + (cardWidth - width) / 2, margin + layerRise * layer, width, cardHeight * shrinking);
}

QRect CardColumn::aboveOverflowDeck(int number) const
{
    double deckTop = 0;
    for (int layer = 0; layer <= deepestLayer; ++layer) {
        deckTop = std::max(deckTop, margin + layerRise * layer + cardHeight * (1 - layerShrinking * layer));
    }
    return windowOf(margin, deckTop + gap + number * (cardHeight + gap), cardWidth, cardHeight);
}

QRect CardColumn::windowOf(double left, double bottom, double width, double height) const
{
    const double pixelsLeft = workArea.left() + (left - hitMargin) * scale;
    const double pixelsTop = workArea.top() + workArea.height() - (bottom + height + hitMargin) * scale;
    // Each edge stands at its nearest pixel; a rounded size would put the far edges elsewhere.
    const auto nearest = [](double edge) { return static_cast<int>(std::floor(edge + 0.5)); };
    const QPoint topLeft(nearest(pixelsLeft), nearest(pixelsTop));
    const QPoint beyond(nearest(pixelsLeft + (width + 2 * hitMargin) * scale),
                        nearest(pixelsTop + (height + 2 * hitMargin) * scale));
    return {topLeft, beyond - QPoint(1, 1)};
}

} // namespace lumenfold::test
