#pragma once

#include "tests/gallery/Scenes.h"

namespace lumenfold::test {

/// The editor's window while there is no page in it.
[[nodiscard]] std::vector<Scene> editorScenes();

} // namespace lumenfold::test
