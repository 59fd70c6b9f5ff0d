#include "cards/CardSizing.h"

#include "app/configuration/AppConfig.h"
#include "platform/image/Image.h"

#include <algorithm>
#include <cmath>

namespace lumenfold {

double pixelAspectRatio(const Image &image)
{
    if (const auto pixels = image.pixelSize(); pixels && pixels->height >= 1) {
        return static_cast<double>(pixels->width) / pixels->height;
    }
    const Size size = image.size();
    return size.height > 0 ? size.width / size.height : stackCardAspectRatio;
}

double cardAspectRatio(PreviewCardVariant variant, const Image &image)
{
    return variant == PreviewCardVariant::pinned ? pixelAspectRatio(image) : stackCardAspectRatio;
}

double cardHitMargin(PreviewCardVariant variant)
{
    return variant == PreviewCardVariant::pinned ? AppConfig::previewPinnedHitMargin : AppConfig::previewCardHitMargin;
}

double clampedCardWidth(double width)
{
    return std::min(std::max(width, AppConfig::previewCardMinWidth), AppConfig::previewCardMaxWidth);
}

Size sizeOfWidth(double width, double aspectRatio)
{
    return {width, width / aspectRatio};
}

Size lockedToRatio(Size current, double aspectRatio)
{
    return sizeOfWidth(std::min(AppConfig::previewCardMaxWidth, 2 * current.width), aspectRatio);
}

bool differsNoticeably(double one, double other)
{
    return std::abs(one - other) > 0.1;
}

Rect cornerResizedFrame(const Rect &startFrame, double hitMargin, double aspectRatio, PreviewResizeCorner corner,
                        Size translation)
{
    const bool isRight = corner == PreviewResizeCorner::topRight || corner == PreviewResizeCorner::bottomRight;
    const bool isTop = corner == PreviewResizeCorner::topLeft || corner == PreviewResizeCorner::topRight;
    const Rect card = startFrame.insetBy(hitMargin);

    // The mean of the horizontal pull and of the vertical one told as a width, so that the card follows the pointer
    // along its diagonal and half-way across it.
    const double pull = (isRight ? translation.width : -translation.width) +
                        aspectRatio * (isTop ? translation.height : -translation.height);
    const Size size = sizeOfWidth(clampedCardWidth(card.width + pull / 2), aspectRatio);
    const double x = isRight ? card.minX() : card.maxX() - size.width;
    const double y = isTop ? card.minY() : card.maxY() - size.height;
    return Rect{x, y, size.width, size.height}.outsetBy(hitMargin);
}

} // namespace lumenfold
