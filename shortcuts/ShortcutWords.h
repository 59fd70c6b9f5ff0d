#pragma once

#include "shortcuts/Shortcut.h"

namespace lumenfold {

/// The combination as people on this desktop call its keys, "Alt+Super+1": beside the symbols, for whoever does not
/// know or see them.
[[nodiscard]] QString shortcutInWords(const Shortcut &shortcut);

} // namespace lumenfold
