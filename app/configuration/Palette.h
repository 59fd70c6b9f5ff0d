#pragma once

#include "platform/appearance/Appearance.h"

#include <QColor>

/// The colours that more than one view paints with. All sRGB.
namespace lumenfold::palette {

/// A colour that is another one in the dark.
struct AdaptiveColor {
    QColor light;
    QColor dark;

    [[nodiscard]] constexpr const QColor &in(ColorScheme scheme) const
    {
        return scheme == ColorScheme::dark ? dark : light;
    }
};

/// A share of 255, as QColor wants it.
[[nodiscard]] constexpr int alpha(double share)
{
    return static_cast<int>(share * 255 + 0.5);
}

/// Black in the light, white in the dark.
[[nodiscard]] constexpr AdaptiveColor contrastLine(double opacity)
{
    return {{0, 0, 0, alpha(opacity)}, {255, 255, 255, alpha(opacity)}};
}

/// The program's own blue: outlines, labels and whatever asks to be noticed. Opaque.
inline constexpr QColor accentPrimary{29, 161, 242};

/// The gradient of a card's primary action, top to bottom.
inline constexpr QColor previewActionTop{64, 177, 255};
inline constexpr QColor previewActionBottom{36, 151, 238};

/// The line around a picture that keeps its edge visible on a ground of its own colour, be that black or white: dark
/// pictures stand on dark desktops in the light appearance too.
inline constexpr AdaptiveColor previewStroke{{128, 128, 128, alpha(0.45)}, {128, 128, 128, alpha(0.45)}};
/// Beneath the actions on a card; it lets a little of the picture through.
inline constexpr AdaptiveColor previewScrim{{214, 214, 214, alpha(0.92)}, {54, 54, 54, alpha(0.92)}};

inline constexpr AdaptiveColor previewCornerButtonFg{{44, 44, 46}, {235, 235, 240}};
inline constexpr AdaptiveColor previewCornerButtonBg{{250, 250, 252}, {58, 58, 60}};
inline constexpr AdaptiveColor previewCornerButtonBorder = contrastLine(0.14);

/// Around the marks at the corners by which a card is resized; the marks lie on pictures of any colour.
inline constexpr AdaptiveColor resizeHandleBorder{{0, 0, 0, alpha(0.45)}, {255, 255, 255, alpha(0.55)}};

inline constexpr AdaptiveColor stackPillBg{{217, 217, 219}, {58, 58, 60}};
inline constexpr AdaptiveColor stackPillBorder = contrastLine(0.16);
inline constexpr AdaptiveColor stackPillFg{{29, 29, 31}, {235, 235, 240}};

/// The green of what is as it should be.
inline constexpr AdaptiveColor statusGood{{26, 127, 55}, {63, 185, 80}};
/// The red of a failure, written on a pill.
inline constexpr AdaptiveColor statusFailure{{190, 18, 24}, {255, 122, 115}};

} // namespace lumenfold::palette
