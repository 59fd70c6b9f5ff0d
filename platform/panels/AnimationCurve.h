#pragma once

#include "platform/panels/Panel.h"

namespace lumenfold {

/// How far a value has got, 0 to 1, when `elapsed` (0 to 1, clamped) of the duration is over. The curves are the cubic
/// Béziers of the same names: standard (0.42, 0, 0.58, 1), easeIn (0.42, 0, 1, 1).
[[nodiscard]] double progressAt(double elapsed, AnimationCurve curve);

} // namespace lumenfold
