#pragma once

#include "editor/EditorView.h"

#include <tl/expected.hpp>

#include <functional>

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

/// What the module is there for. Main thread.
struct EditorModule {
    /// Starts the web engine, once in a program, before the first view is made. A step of its own, because this one
    /// call keeps the thread for some fifty milliseconds, most of which it waits until the engine's first process
    /// answers.
    std::function<void()> startEngine;
    MakeEditorView makeView;
};

/// Loads the module `lumenfold_editor` with the web engine, which lies beside the program or in its folder for modules,
/// and sees to it that the engine's code is in memory when the main thread gets there. Takes some tenths of a second
/// the first time; any thread.
[[nodiscard]] tl::expected<EditorModule, EditorModuleTrouble> loadEditorModule();

/// The engine stays in the program, but nobody needs its code while no view is there: some 50 MiB. Takes some
/// milliseconds; any thread.
void giveEngineBack();

} // namespace lumenfold
