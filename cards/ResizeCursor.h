#pragma once

#include "cards/PreviewCardVariant.h"

#include <QCursor>

namespace lumenfold {

/// A diagonal double arrow, black with a white rim, for the corner that is resized. Made once for each of the two
/// diagonals and each scale. `devicePixelRatio` is that of the screen it is shown on.
[[nodiscard]] QCursor resizeCursor(PreviewResizeCorner corner, double devicePixelRatio);

} // namespace lumenfold
