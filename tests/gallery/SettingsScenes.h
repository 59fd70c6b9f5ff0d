#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The settings window with each of its tabs.
[[nodiscard]] std::vector<Scene> settingsScenes();

} // namespace lumenfold::test
