#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The dialog that asks for the API key, in every state.
[[nodiscard]] std::vector<Scene> accountScenes();

} // namespace lumenfold::test
