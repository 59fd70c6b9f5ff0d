#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The window about updates, in every state.
[[nodiscard]] std::vector<Scene> updateScenes();

} // namespace lumenfold::test
