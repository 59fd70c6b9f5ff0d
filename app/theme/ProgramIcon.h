#pragma once

#include <QIcon>

namespace lumenfold {

/// The program's own icon, in colour, for windows that show it: 16 to 128 points, sharp at every scale. The same
/// drawing as the one that is installed for the desktop.
[[nodiscard]] QIcon programIcon();

} // namespace lumenfold
