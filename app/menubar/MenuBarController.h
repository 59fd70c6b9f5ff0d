#pragma once

#include "platform/notifications/NotificationCenter.h"
#include "platform/statusitem/StatusItem.h"
#include "shortcuts/ShortcutStore.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lumenfold {

class ApiKeySetupWindow;
class AuthService;
class CaptureCoordinator;
class MainQueue;
class SettingsWindow;
class UpdaterController;
class Workspace;

/// The status item with its menu: the captures, the account, updates, settings and quitting. The menu is built anew
/// whenever something that it shows has changed. One for the whole program; main thread.
class MenuBarController : public QObject {
    Q_OBJECT

public:
    struct Collaborators {
        std::unique_ptr<StatusItem> statusItem;
        /// The references must outlive the controller.
        CaptureCoordinator &coordinator;
        AuthService &auth;
        ShortcutStore &shortcuts;
        UpdaterController &updater;
        NotificationCenter &notifications;
        MainQueue &queue;
        Workspace &workspace;
        ApiKeySetupWindow &apiKeySetup;
        SettingsWindow &settings;
    };

    explicit MenuBarController(Collaborators collaborators);
    ~MenuBarController() override;

    /// See keyEquivalentForKeyCode().
    [[nodiscard]] static QString keyEquivalent(std::uint32_t keyCode);

private:
    void captureFull();
    void captureArea();
    void captureLastArea();
    void signIn();
    void signOut();
    void openSettings();
    void quit();

    void authChanged();
    void updateAvailabilityChanged();
    void shortcutsChanged();

    void rebuildMenu();
    void setUpdateBadgeVisible(bool visible);

    /// Runs in a later turn of the event loop, so that no menu is built inside the code that posts.
    void later(std::function<void(MenuBarController &)> work);
    /// Notifications of any sender.
    void observe(const QString &name, void (MenuBarController::*handler)());

    [[nodiscard]] MenuItem command(const QString &title, void (MenuBarController::*action)());
    [[nodiscard]] MenuItem capture(const QString &title, void (MenuBarController::*action)(),
                                   ShortcutStore::Action shortcut);
    /// Its target is the updater's own controller, which must be there.
    [[nodiscard]] MenuItem checkForUpdates(const QString &title);
    [[nodiscard]] bool canUpdate() const;

    const Collaborators m_with;
    std::vector<std::unique_ptr<NotificationCenter::Observation>> m_observations;
};

} // namespace lumenfold
