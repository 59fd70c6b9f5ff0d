#include "app/configuration/CardMeasures.h"

#include "app/configuration/AppConfig.h"

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

constexpr double referenceHeight = 875;
constexpr double referenceCapacity = 6;
constexpr int smallestCapacity = 3;
constexpr Size fallbackCardSize{220, 165};
constexpr double heightPerWidth = 3.0 / 4.0;

} // namespace

int stackCapacity(std::optional<double> visibleHeight)
{
    // std::round takes halves away from zero.
    const double cards = std::round(visibleHeight.value_or(referenceHeight) / referenceHeight * referenceCapacity);
    return std::max(static_cast<int>(cards), smallestCapacity);
}

Size defaultCardSize(std::optional<double> visibleHeight)
{
    if (!visibleHeight) {
        return fallbackCardSize;
    }
    const int capacity = stackCapacity(visibleHeight);
    const double room = *visibleHeight - 2 * AppConfig::previewMargin - (capacity - 1) * AppConfig::previewCardGap;
    if (room <= 0) {
        return fallbackCardSize;
    }
    const double height = std::clamp(room / capacity, AppConfig::previewCardMinWidth * heightPerWidth,
                                     AppConfig::previewCardMaxWidth * heightPerWidth);
    return {height / heightPerWidth, height};
}

} // namespace lumenfold
