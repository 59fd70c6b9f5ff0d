#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The template picker in all its states.
[[nodiscard]] std::vector<Scene> templateScenes();

} // namespace lumenfold::test
