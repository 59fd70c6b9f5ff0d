#include "app/lifecycle/AppDelegate.h"

#include "app/lifecycle/ScreenRecordingAlert.h"
#include "app/menubar/MenuBarController.h"
#include "capture/CaptureCoordinator.h"
#include "platform/alerts/Alerts.h"
#include "platform/permissions/Permissions.h"
#include "platform/remoteactions/RemoteActions.h"
#include "platform/workspace/Workspace.h"
#include "service/ApiKeySetupWindow.h"
#include "service/AuthService.h"
#include "settings/SettingsWindow.h"
#include "shortcuts/HotkeyManager.h"

#include <QDebug>
#include <QPointer>

#include <array>

#include <utility>

namespace lumenfold {

AppDelegate::AppDelegate(Collaborators collaborators) : m_with(std::move(collaborators)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    m_with.workspace.setActivationPolicy(ActivationPolicy::accessory);

    const bool isAllowed = m_with.permissions.preflightScreenCaptureAccess();
    qInfo().noquote().nospace() << "LumenFold screen-recording preflight: " << (isAllowed ? "true" : "false");
    if (isAllowed) {
        buildLongLivedObjects();
        return;
    }
    requestScreenCaptureAccess().then([self = QPointer(this)] {
        if (self) {
            self->buildLongLivedObjects();
        }
    });
}

void AppDelegate::carryOut(const QString &action)
{
    QMetaObject::invokeMethod(
        this,
        [this, action] {
            if (const auto command = m_actions.value(action)) {
                command();
            }
        },
        Qt::QueuedConnection);
}

void AppDelegate::applicationWillTerminate()
{
    if (captureCoordinator) {
        captureCoordinator->persistCards();
    }
}

QCoro::Task<> AppDelegate::requestScreenCaptureAccess()
{
    m_with.permissions.requestScreenCaptureAccess();
    // A first nudge; the alert explains it.
    openScreenRecordingSettings();
    m_with.workspace.activateIgnoringOtherApps();
    const QPointer self(this);
    const int chosen = co_await m_with.alerts.runModal(screenRecordingAlert(m_with.productName));
    if (self && chosen == alertFirstButtonReturn) {
        openScreenRecordingSettings();
    }
}

void AppDelegate::buildLongLivedObjects()
{
    m_with.startUpdater();
    captureCoordinator = m_with.makeCaptureCoordinator();
    menuBarController = m_with.makeMenuBarController(*captureCoordinator);
    hotkeyManager = m_with.makeHotkeyManager();

    captureCoordinator->setUndoAvailabilityHandler([self = QPointer(this)](bool available) {
        if (self) {
            self->undoAvailabilityChanged(available);
        }
    });
    registerHotkeys();
    promptForApiKeyIfNeeded();
    captureCoordinator->restorePreviousCards();

    m_shortcutsObservation = m_with.notifications.observe(ShortcutStore::changedNotification,
                                                          [this](const Notification &) { shortcutsChanged(); });
    m_recordingObservation =
        m_with.notifications.observe(ShortcutStore::recordingNotification,
                                     [this](const Notification &notification) { recordingChanged(notification); });
    publishRemoteActions();
}

QCoro::Task<> AppDelegate::promptForApiKeyIfNeeded()
{
    const QPointer self(this);
    co_await m_with.auth.firstAnswer();
    if (self && m_with.auth.isKnownToBeSignedOut()) {
        m_with.apiKeySetup.present();
    }
}

void AppDelegate::registerHotkeys()
{
    struct Binding {
        ShortcutStore::Action action;
        void (CaptureCoordinator::*command)();
    };
    static constexpr std::array bindings{
        Binding{ShortcutStore::Action::fullScreen, &CaptureCoordinator::captureFullScreen},
        Binding{ShortcutStore::Action::area, &CaptureCoordinator::captureArea},
        Binding{ShortcutStore::Action::lastArea, &CaptureCoordinator::captureLastArea},
    };

    hotkeyManager->unregisterAll();
    undoHotkeyID.reset();
    for (const Binding &binding : bindings) {
        const Shortcut shortcut = m_with.shortcuts.shortcut(binding.action);
        hotkeyManager->registerHotkey(shortcut.keyCode, shortcut.carbonModifiers, onCoordinator(binding.command));
    }
    applyUndoHotkey();
}

void AppDelegate::applyUndoHotkey()
{
    if (isUndoAvailable && !undoHotkeyID) {
        const Shortcut shortcut = m_with.shortcuts.shortcut(ShortcutStore::Action::undo);
        undoHotkeyID = hotkeyManager->registerHotkey(shortcut.keyCode, shortcut.carbonModifiers,
                                                     onCoordinator(&CaptureCoordinator::undoDismissedCards));
    } else if (!isUndoAvailable && undoHotkeyID) {
        hotkeyManager->unregister(*undoHotkeyID);
        undoHotkeyID.reset();
    }
}

void AppDelegate::undoAvailabilityChanged(bool available)
{
    if (available == isUndoAvailable) {
        return;
    }
    isUndoAvailable = available;
    applyUndoHotkey();
}

void AppDelegate::shortcutsChanged()
{
    registerHotkeys();
}

void AppDelegate::recordingChanged(const Notification &notification)
{
    const QVariant recording = notification.userInfo.value(ShortcutStore::recordingKey);
    if (recording.typeId() == QMetaType::Bool && recording.toBool()) {
        // The recorder gets every combination, also those that are bound.
        hotkeyManager->unregisterAll();
        undoHotkeyID.reset();
    } else {
        registerHotkeys();
    }
}

void AppDelegate::openScreenRecordingSettings()
{
    m_with.workspace.open(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture")));
}

void AppDelegate::publishRemoteActions()
{
    const auto settings = [self = QPointer(this)] {
        if (self) {
            self->openSettings();
        }
    };
    const auto quit = [self = QPointer(this)] {
        if (self) {
            self->m_with.workspace.terminate();
        }
    };
    m_actions = {{QStringLiteral("capture-full-screen"), onCoordinator(&CaptureCoordinator::captureFullScreen)},
                 {QStringLiteral("capture-area"), onCoordinator(&CaptureCoordinator::captureArea)},
                 {QStringLiteral("capture-last-area"), onCoordinator(&CaptureCoordinator::captureLastArea)},
                 {QStringLiteral("settings"), settings},
                 {QStringLiteral("quit"), quit}};
    m_with.remoteActions.publish({.activate = settings, .actions = m_actions});
}

void AppDelegate::openSettings()
{
    m_with.settings.present();
}

std::function<void()> AppDelegate::onCoordinator(void (CaptureCoordinator::*command)())
{
    return [self = QPointer(this), command] {
        if (self) {
            (self->captureCoordinator.get()->*command)();
        }
    };
}

} // namespace lumenfold
