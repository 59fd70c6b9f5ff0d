#include "tests/gallery/AccountScenes.h"

#include "service/apikey/ApiKeySetupWindowController.h"
#include "service/apikey/LinkButton.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/service/ServiceDouble.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include <array>
#include <optional>
#include <utility>

namespace lumenfold::test {
namespace {

struct DialogState {
    QString key{};
    /// What the service does when the button is pressed; nothing if it is not.
    std::optional<Behaviour> answer{};
    bool isValidating = false;
    bool hasKeyring = true;
    bool isLinkFocused = false;
};

QDialog *shownDialog()
{
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *each : all) {
        if (auto *dialog = qobject_cast<QDialog *>(each); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

QImage paintDialog(const DialogState &state, ColorScheme scheme)
{
    ServiceDouble service;
    FakeAccount account;
    account.keyring.setAvailable(state.hasKeyring);
    account.useService(service.baseURL());
    FakeAppearance appearance;
    appearance.setColorScheme(scheme);
    FakeWorkspace workspace;
    ApiKeySetupWindowController controller(
        {.auth = account.auth, .config = account.config, .appearance = appearance, .workspace = workspace});
    controller.present();
    QDialog *dialog = shownDialog();
    dialog->findChild<QLineEdit *>()->setText(state.key);
    if (state.answer) {
        service.behave(ServiceDouble::Endpoint::user, *state.answer);
        dialog->findChild<QPushButton *>()->click();
        const auto *view = dialog->findChild<ApiKeySetupView *>();
        (void)waitFor([&] { return view->isValidating() == state.isValidating; });
    }
    if (state.isLinkFocused) {
        dialog->findChild<LinkButton *>()->setFocus();
    }
    // The layout follows in its own time.
    (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
    return dialog->grab().toImage();
}

} // namespace

std::vector<Scene> accountScenes()
{
    const QString key = QStringLiteral("lf_0123456789abcdef");
    const std::vector<std::pair<QString, DialogState>> states{
        {QStringLiteral("empty"), {}},
        {QStringLiteral("typed"), {.key = key}},
        {QStringLiteral("validating"),
         {.key = key, .answer = Behaviour{.way = Behaviour::Way::silence}, .isValidating = true}},
        {QStringLiteral("wrong"), {.key = key, .answer = answering(401)}},
        {QStringLiteral("unreachable"), {.key = key, .answer = Behaviour{.way = Behaviour::Way::cut}}},
        {QStringLiteral("server-error"), {.key = key, .answer = answering(500)}},
        {QStringLiteral("no-keyring"), {.key = key, .hasKeyring = false}},
        {QStringLiteral("no-keyring-wrong"), {.key = key, .answer = answering(401), .hasKeyring = false}},
        {QStringLiteral("link-focused"), {.isLinkFocused = true}},
    };
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        for (const auto &[name, state] : states) {
            scenes.push_back({QStringLiteral("api-key-") + name + u'-' + suffix,
                              [state = state, scheme = scheme] { return paintDialog(state, scheme); }});
        }
    }
    return scenes;
}

} // namespace lumenfold::test
