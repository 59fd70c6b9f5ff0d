#include "tests/support/settings/SettingsDesk.h"

#include "settings/SettingsTabBar.h"

#include <QApplication>
#include <QDialog>

#include <stdexcept>

namespace lumenfold::test {

SettingsDesk::SettingsDesk(KeyEventTapService *taps)
    : controller(std::make_unique<SettingsWindowController>(SettingsWindowController::Collaborators{
          .view = {.general = {.config = config,
                               .recorder = {.taps = taps != nullptr ? *taps : fakeTaps,
                                            .store = shortcuts,
                                            .alerts = alerts,
                                            .workspace = workspace},
                               .notifications = notifications,
                               .openPanel = openPanel,
                               .autostart = autostart},
                   .templates = {.picker = {.service = service,
                                            .isSignedIn = [this] { return auth.isSignedIn(); },
                                            .store = templates,
                                            .notifications = notifications,
                                            .apiKeySetup = apiKeySetup},
                                 .downloads = previews,
                                 .cache = std::nullopt},
                   .account = {.auth = auth, .apiKeySetup = apiKeySetup, .appearance = appearance}},
          .workspace = workspace}))
    , m_recordingObservation(
          notifications.observe(ShortcutStore::recordingNotification, [this](const Notification &notification) {
              recordings.push_back(notification.userInfo.value(ShortcutStore::recordingKey).toBool());
          }))
{
}

SettingsDesk::~SettingsDesk()
{
    controller.reset();
    while (service.running() > 0) {
        service.succeed();
    }
}

void SettingsDesk::signIn(const QString &email)
{
    if (!email.isEmpty()) {
        defaults.setRaw(AuthService::emailDefaultsKey, email);
    }
    putKey("key");
    queue.advance({});
}

QDialog *SettingsDesk::window()
{
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *each : all) {
        if (auto *dialog = qobject_cast<QDialog *>(each);
            dialog != nullptr && dialog->findChild<SettingsView *>() != nullptr) {
            return dialog;
        }
    }
    return nullptr;
}

void SettingsDesk::showTab(const QString &label)
{
    auto *tabs = anywhere()->findChild<SettingsTabBar *>();
    for (int index = 0; index < tabs->count(); ++index) {
        if (tabs->tabText(index) == label) {
            tabs->setCurrentIndex(index);
            return;
        }
    }
    throw std::logic_error("no such tab: " + label.toStdString());
}

QWidget *SettingsDesk::anywhere()
{
    return window();
}

} // namespace lumenfold::test
