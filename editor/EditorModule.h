#pragma once

#include "editor/EditorView.h"

#include <tl/expected.hpp>

namespace lumenfold {

/// Why there can be no editor here.
struct EditorModuleTrouble {
    enum class Kind {
        /// The module, or the web engine that it stands on, is not installed.
        missing,
        /// The web engine's sandbox is not to be had for the superuser.
        superuser,
        /// The system lets nobody make a sandbox.
        noSandbox,
    };

    Kind kind;
    /// For the log.
    QString reason;
};

/// Loads the module `lumenfold_editor` with the web engine, which lies beside the program or in its folder for modules.
/// Takes some tenths of a second the first time; any thread. What it gives makes views on the main thread.
[[nodiscard]] tl::expected<MakeEditorView, EditorModuleTrouble> loadEditorModule();

} // namespace lumenfold
