#pragma once

#include <QColor>

/// The colours that more than one subsystem paints with.
namespace lumenfold::palette {

/// The program's own blue: outlines, labels and whatever asks to be noticed. sRGB, opaque.
inline constexpr QColor accentPrimary{29, 161, 242};

} // namespace lumenfold::palette
