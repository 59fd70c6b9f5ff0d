#pragma once

#include <memory>

namespace lumenfold {

class EventMonitors;
class HotKeyService;
class KeyEventTapService;
class PanelFactory;
class Pasteboard;
class Permissions;
class ScreenshotManager;
class Screens;
class StatusItem;
class WindowList;
struct StatusItemSurroundings;

/// The part of the platform that depends on the kind of session, as one backend offers it. The services live as long as
/// this object, and end before the toolkit's application object does.
class PlatformServices {
public:
    PlatformServices() = default;
    PlatformServices(const PlatformServices &) = delete;
    PlatformServices &operator=(const PlatformServices &) = delete;
    virtual ~PlatformServices() = default;

    [[nodiscard]] virtual KeyEventTapService &keyEventTaps() = 0;
    [[nodiscard]] virtual HotKeyService &hotKeys() = 0;
    [[nodiscard]] virtual Screens &screens() = 0;
    [[nodiscard]] virtual ScreenshotManager &screenshots() = 0;
    [[nodiscard]] virtual WindowList &windowList() = 0;
    [[nodiscard]] virtual PanelFactory &panels() = 0;
    [[nodiscard]] virtual EventMonitors &eventMonitors() = 0;
    [[nodiscard]] virtual Pasteboard &pasteboard() = 0;
    [[nodiscard]] virtual Permissions &permissions() = 0;
    /// A place of the program's own in the status area. Ends before this object does.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemSurroundings surroundings) = 0;
};

} // namespace lumenfold
