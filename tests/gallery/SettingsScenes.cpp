#include "tests/gallery/SettingsScenes.h"

#include "settings/GeneralSettingsView.h"
#include "settings/SettingsTabBar.h"
#include "shortcuts/recorder/ShortcutRecorderButton.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/settings/SettingsDesk.h"

#include <QDialog>
#include <QScrollBar>

#include <array>

namespace lumenfold::test {
namespace {

struct WindowState {
    QString tab = QStringLiteral("General");
    QString email{};
    bool isSignedIn = false;
    QString saveFolder{};
    bool isScrolledDown = false;
    bool isRecording = false;
    bool isPermissionMissing = false;
    bool hasKeyboardOnTabs = false;
};

QImage paintWindow(const WindowState &state, ColorScheme scheme)
{
    SettingsDesk desk;
    desk.appearance.setColorScheme(scheme);
    if (state.isSignedIn) {
        desk.signIn(state.email);
    }
    if (!state.saveFolder.isEmpty()) {
        desk.files.directories.insert(state.saveFolder);
        desk.config.chooseSaveDirectory(state.saveFolder);
    }
    desk.controller->present();
    SettingsDesk::showTab(state.tab);
    QDialog *window = SettingsDesk::window();
    if (state.isRecording || state.isPermissionMissing) {
        desk.fakeTaps.setAvailable(!state.isPermissionMissing);
        SettingsDesk::parts<ShortcutRecorderButton>().at(1)->click();
    }
    if (state.hasKeyboardOnTabs) {
        window->activateWindow();
        window->findChild<SettingsTabBar *>()->setFocus(Qt::TabFocusReason);
    }
    // The layout follows in its own time.
    (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
    if (state.isScrolledDown) {
        QScrollBar *bar = window->findChild<GeneralSettingsView *>()->verticalScrollBar();
        bar->setValue(bar->maximum());
    }
    const QImage seen = window->grab().toImage();
    if (desk.alerts.upCount() > 0) {
        (void)desk.alerts.answer(alertFirstButtonReturn + 1);
    }
    return seen;
}

} // namespace

std::vector<Scene> settingsScenes()
{
    const QString account = QStringLiteral("Account");
    const std::vector<std::pair<QString, WindowState>> states{
        {QStringLiteral("general"), {}},
        {QStringLiteral("general-end"), {.isScrolledDown = true}},
        {QStringLiteral("general-folder"),
         {.saveFolder = QStringLiteral("/home/someone/Documents/Projects/LumenFold/Screenshots for the handbook")}},
        {QStringLiteral("general-recording"), {.isRecording = true}},
        {QStringLiteral("general-permission"), {.isPermissionMissing = true}},
        {QStringLiteral("general-keyboard"), {.hasKeyboardOnTabs = true}},
        {QStringLiteral("template"), {.tab = QStringLiteral("Template")}},
        {QStringLiteral("account"), {.tab = account}},
        {QStringLiteral("account-connected"),
         {.tab = account, .email = QStringLiteral("ada@example.org"), .isSignedIn = true}},
    };
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        for (const auto &[name, state] : states) {
            scenes.push_back({QStringLiteral("settings-%1-%2").arg(name, suffix),
                              [state = state, scheme = scheme] { return paintWindow(state, scheme); }});
        }
    }
    return scenes;
}

} // namespace lumenfold::test
