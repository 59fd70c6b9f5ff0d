#pragma once

#include <QRect>

/// Where the windows of stack cards must stand, worked out here from the measures that people were promised and not
/// with the program's own code.
namespace lumenfold::test {

/// A screen on which every measure is a whole number: 6 cards of 156 x 117 points fill its column.
inline constexpr QSize cardFriendlyScreen{1280, 810};

/// Of that screen, or one of the same size in points.
struct CardColumn {
    /// The part of the screen that is free of panels; pixels, origin top left. Its height must be 810 points.
    QRect workArea{QPoint(0, 0), cardFriendlyScreen};
    /// Pixels per point.
    int scale = 1;

    static constexpr int capacity = 6;
    static constexpr int cardWidth = 156;
    static constexpr int cardHeight = 117;
    /// Around every card, inside its window.
    static constexpr int hitMargin = 30;

    /// The window of the card in a slot; 0 is the lowest. Pixels, origin top left.
    [[nodiscard]] QRect slot(int number) const;
    /// The window of a card in the deck that the oldest become when there are more than the column holds; 0 is in
    /// front.
    [[nodiscard]] QRect overflowDeck(int depth) const;
    /// The window of a card that stands alone above a deck of three or more; 0 is the lowest.
    [[nodiscard]] QRect aboveOverflowDeck(int number) const;

private:
    /// From the lower left corner of the work area, y up, points.
    [[nodiscard]] QRect windowOf(double left, double bottom, double width, double height) const;
};

} // namespace lumenfold::test
