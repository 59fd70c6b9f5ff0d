#pragma once

#include "cards/PreviewCardVariant.h"
#include "platform/geometry/Geometry.h"

namespace lumenfold {

class Image;

/// The sizes of cards. All in points unless said otherwise; ratios are width by height.

/// Of a stack card, and of a picture about which nothing is known.
inline constexpr double stackCardAspectRatio = 4.0 / 3.0;

/// Of the picture's pixels; of its size in points when it has no pixels; else 4:3.
[[nodiscard]] double pixelAspectRatio(const Image &image);

/// Of a card that shows the image: 4:3 in the column, the image's own when pinned.
[[nodiscard]] double cardAspectRatio(PreviewCardVariant variant, const Image &image);

/// The transparent band around a card inside its panel.
[[nodiscard]] double cardHitMargin(PreviewCardVariant variant);

/// Within the smallest and the largest width of a card.
[[nodiscard]] double clampedCardWidth(double width);

[[nodiscard]] Size sizeOfWidth(double width, double aspectRatio);

/// The size of a freshly pinned card: twice the width it has in the column, at most the largest card width.
[[nodiscard]] Size lockedToRatio(Size current, double aspectRatio);

/// More than rounding on the way through a window.
[[nodiscard]] bool differsNoticeably(double one, double other);

/// The panel frame after `corner` was pulled by `translation` from `startFrame`: in proportion, within the widths of a
/// card, the opposite corner where it was.
[[nodiscard]] Rect cornerResizedFrame(const Rect &startFrame, double hitMargin, double aspectRatio,
                                      PreviewResizeCorner corner, Size translation);

} // namespace lumenfold
