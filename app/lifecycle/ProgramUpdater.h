#pragma once

#include <memory>

namespace lumenfold {

class Appearance;
class HttpClient;
class MainQueue;
class StandardUpdaterController;
class UpdaterDelegate;
class UserDefaults;
class Workspace;

struct UpdaterCollaborators {
    HttpClient &http;
    UserDefaults &defaults;
    MainQueue &queue;
    Workspace &workspace;
    const Appearance &appearance;
};

/// The updater of this program, with its feed and its window. Nothing when the program was built without
/// (LUMENFOLD_UPDATES), because a distribution brings its updates. Everything must outlive it.
[[nodiscard]] std::unique_ptr<StandardUpdaterController> makeProgramUpdater(const UpdaterCollaborators &with,
                                                                            UpdaterDelegate &delegate);

} // namespace lumenfold
