#pragma once

#include "platform/secrets/Keyring.h"

namespace lumenfold {

/// Makes keyrings with the module `lumenfold_keyring`, which lies beside the program or in its folder for modules, and
/// is loaded at the first call. A module that is missing, or misses a library, is in the log.
[[nodiscard]] std::unique_ptr<Keyring> makeKeyringOfModule();

} // namespace lumenfold
