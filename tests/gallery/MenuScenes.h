#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The status item's icon in every size of panels, and its menu.
[[nodiscard]] std::vector<Scene> menuScenes();

} // namespace lumenfold::test
