#pragma once

#include "shortcuts/ShortcutStore.h"

#include "platform/notifications/NotificationCenter.h"

#include <QCoroTask>
#include <QMap>
#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumenfold {

class Alerts;
class ApiKeySetupWindow;
class AuthService;
class CaptureCoordinator;
class HotkeyManager;
class MenuBarController;
class Permissions;
class RemoteActions;
class SettingsWindow;
class Workspace;

/// Brings the program to life in a fixed order, keeps the hotkeys bound to the captures, and saves the cards at the
/// end. One for the whole program; main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// The references must outlive the delegate.
    struct Collaborators {
        Workspace &workspace;
        Permissions &permissions;
        Alerts &alerts;
        NotificationCenter &notifications;
        ShortcutStore &shortcuts;
        AuthService &auth;
        ApiKeySetupWindow &apiKeySetup;
        RemoteActions &remoteActions;
        SettingsWindow &settings;
        /// Each is called once, in its turn of the start-up.
        std::function<void()> startUpdater;
        std::function<std::unique_ptr<CaptureCoordinator>()> makeCaptureCoordinator;
        std::function<std::unique_ptr<MenuBarController>(CaptureCoordinator &coordinator)> makeMenuBarController;
        std::function<std::unique_ptr<HotkeyManager>()> makeHotkeyManager;
        /// What the user calls the program; see productName().
        QString productName;
    };

    explicit AppDelegate(Collaborators collaborators);
    ~AppDelegate() override;

    /// Starts the program. Where a permission is missing, the user is told first, and the rest waits for his answer.
    void applicationDidFinishLaunching();

    /// One of the actions that the desktop may ask for, in a later turn of the event loop; an unknown one is none.
    void carryOut(const QString &action);

    /// Saves the cards, unless the program ends before it has any.
    void applicationWillTerminate();

private:
    QCoro::Task<> requestScreenCaptureAccess();
    void buildLongLivedObjects();

    /// Asks for the API key when it is certain that none is stored. The keyring is not waited for: where it has not
    /// answered yet, the start goes on and the window comes with the answer.
    QCoro::Task<> promptForApiKeyIfNeeded();

    void registerHotkeys();
    /// Keeps the undo hotkey registered exactly while there is something to undo, so that other programs have the
    /// combination at all other times.
    void applyUndoHotkey();
    void undoAvailabilityChanged(bool available);

    void shortcutsChanged();
    void recordingChanged(const Notification &notification);

    void openScreenRecordingSettings();

    /// What the desktop may ask for: the captures, the settings and the end.
    void publishRemoteActions();
    void openSettings();

    /// An action that does nothing once the delegate is gone.
    [[nodiscard]] std::function<void()> onCoordinator(void (CaptureCoordinator::*command)());

    std::unique_ptr<CaptureCoordinator> captureCoordinator;
    std::unique_ptr<MenuBarController> menuBarController;
    std::unique_ptr<HotkeyManager> hotkeyManager;
    bool isUndoAvailable = false;
    /// The undo hotkey while it is registered.
    std::optional<std::uint32_t> undoHotkeyID;

    const Collaborators m_with;
    QMap<QString, std::function<void()>> m_actions;
    std::unique_ptr<NotificationCenter::Observation> m_shortcutsObservation;
    std::unique_ptr<NotificationCenter::Observation> m_recordingObservation;
};

} // namespace lumenfold
