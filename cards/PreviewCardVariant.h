#pragma once

namespace lumenfold {

enum class PreviewCardVariant {
    /// A card in the column at the screen's edge; always 4:3.
    stack,
    /// A card the user has pinned: it floats freely in the image's own proportions.
    pinned,
};

/// The corner of the card whose handle a resize drag started from.
enum class PreviewResizeCorner { topLeft, topRight, bottomLeft, bottomRight };

} // namespace lumenfold
