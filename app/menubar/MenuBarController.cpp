#include "app/menubar/MenuBarController.h"

#include "app/menubar/KeyEquivalents.h"
#include "app/menubar/MenuBarImages.h"
#include "app/updates/UpdaterController.h"
#include "capture/CaptureCoordinator.h"
#include "platform/keyboard/KeyEvent.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/workspace/Workspace.h"
#include "service/ApiKeySetupWindow.h"
#include "service/AuthService.h"
#include "settings/SettingsWindow.h"

#include <QPointer>

#include <optional>
#include <utility>

namespace lumenfold {

MenuBarController::MenuBarController(Collaborators collaborators) : m_with(std::move(collaborators))
{
    m_with.statusItem->setImage(menuBarImage());
    setUpdateBadgeVisible(m_with.updater.hasAvailableUpdate());
    rebuildMenu();
    observe(AuthService::authStateChangedNotification, &MenuBarController::authChanged);
    observe(UpdaterController::updateAvailabilityChangedNotification, &MenuBarController::updateAvailabilityChanged);
    observe(ShortcutStore::changedNotification, &MenuBarController::shortcutsChanged);
}

MenuBarController::~MenuBarController() = default;

QString MenuBarController::keyEquivalent(std::uint32_t keyCode)
{
    return keyEquivalentForKeyCode(keyCode);
}

void MenuBarController::captureFull()
{
    m_with.coordinator.captureFullScreen();
}

void MenuBarController::captureArea()
{
    m_with.coordinator.captureArea();
}

void MenuBarController::captureLastArea()
{
    m_with.coordinator.captureLastArea();
}

void MenuBarController::signIn()
{
    m_with.apiKeySetup.present();
}

void MenuBarController::signOut()
{
    m_with.auth.signOut();
}

void MenuBarController::openSettings()
{
    m_with.settings.present();
}

void MenuBarController::quit()
{
    m_with.workspace.terminate();
}

void MenuBarController::authChanged()
{
    later(&MenuBarController::rebuildMenu);
}

void MenuBarController::updateAvailabilityChanged()
{
    later([](MenuBarController &self) {
        self.setUpdateBadgeVisible(self.m_with.updater.hasAvailableUpdate());
        self.rebuildMenu();
    });
}

void MenuBarController::shortcutsChanged()
{
    later(&MenuBarController::rebuildMenu);
}

void MenuBarController::rebuildMenu()
{
    Menu menu;
    if (canUpdate() && m_with.updater.hasAvailableUpdate()) {
        MenuItem available = checkForUpdates(tr("Update Available…"));
        // This one is the controller's own.
        available.target = this;
        available.image = updateDotImage();
        menu.push_back(std::move(available));
        menu.push_back(MenuItem::separator());
    }
    menu.push_back(
        capture(tr("Capture Full Screen"), &MenuBarController::captureFull, ShortcutStore::Action::fullScreen));
    menu.push_back(capture(tr("Capture Area"), &MenuBarController::captureArea, ShortcutStore::Action::area));
    menu.push_back(
        capture(tr("Capture Last Area"), &MenuBarController::captureLastArea, ShortcutStore::Action::lastArea));
    menu.push_back(MenuItem::separator());
    if (m_with.auth.isSignedIn()) {
        MenuItem account;
        const std::optional<QString> email = m_with.auth.userEmail();
        account.title = email && !email->isEmpty() ? tr("Connected · %1").arg(*email) : tr("Connected to LumenFold");
        account.isEnabled = false;
        menu.push_back(std::move(account));
        menu.push_back(command(tr("Disconnect"), &MenuBarController::signOut));
    } else {
        menu.push_back(command(tr("Connect with API Key…"), &MenuBarController::signIn));
    }
    menu.push_back(MenuItem::separator());
    if (canUpdate()) {
        menu.push_back(checkForUpdates(tr("Check for Updates…")));
        menu.push_back(MenuItem::separator());
    }
    MenuItem settings = command(tr("Settings…"), &MenuBarController::openSettings);
    settings.keyEquivalent = QStringLiteral(",");
    settings.keyEquivalentModifierMask = keyFlags::command;
    menu.push_back(std::move(settings));
    menu.push_back(MenuItem::separator());
    MenuItem quit = command(tr("Quit"), &MenuBarController::quit);
    quit.keyEquivalent = QStringLiteral("q");
    quit.keyEquivalentModifierMask = keyFlags::command;
    menu.push_back(std::move(quit));
    m_with.statusItem->setMenu(std::move(menu));
}

void MenuBarController::setUpdateBadgeVisible(bool visible)
{
    m_with.statusItem->setUpdateBadgeVisible(visible);
}

void MenuBarController::later(std::function<void(MenuBarController &)> work)
{
    m_with.queue.post([self = QPointer(this), work = std::move(work)] {
        if (self) {
            work(*self);
        }
    });
}

void MenuBarController::observe(const QString &name, void (MenuBarController::*handler)())
{
    m_observations.push_back(
        m_with.notifications.observe(name, [this, handler](const Notification &) { (this->*handler)(); }));
}

MenuItem MenuBarController::command(const QString &title, void (MenuBarController::*action)())
{
    MenuItem item;
    item.title = title;
    item.action = [self = QPointer(this), action] {
        if (self) {
            (self.data()->*action)();
        }
    };
    item.target = this;
    return item;
}

MenuItem MenuBarController::capture(const QString &title, void (MenuBarController::*action)(),
                                    ShortcutStore::Action shortcut)
{
    MenuItem item = command(title, action);
    const Shortcut bound = m_with.shortcuts.shortcut(shortcut);
    item.keyEquivalent = keyEquivalent(bound.keyCode);
    item.keyEquivalentModifierMask = modifierMaskForCarbon(bound.carbonModifiers);
    return item;
}

MenuItem MenuBarController::checkForUpdates(const QString &title)
{
    MenuItem item;
    item.title = title;
    item.action = [self = QPointer(this)] {
        if (self) {
            self->m_with.updater.controller()->checkForUpdates();
        }
    };
    item.target = m_with.updater.controller();
    return item;
}

bool MenuBarController::canUpdate() const
{
    return m_with.updater.controller() != nullptr;
}

} // namespace lumenfold
