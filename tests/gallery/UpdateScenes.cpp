#include "tests/gallery/UpdateScenes.h"

#include "app/updates/UpdateWindowController.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QDialog>

#include <array>
#include <functional>
#include <utility>

namespace lumenfold::test {
namespace {

using Shows = std::function<void(UpdateUserDriver &)>;

QImage paintWindow(const Shows &shows, ColorScheme scheme)
{
    FakeAppearance appearance;
    appearance.setColorScheme(scheme);
    FakeWorkspace workspace;
    UpdateWindowController controller(
        {.appearance = appearance, .workspace = workspace, .runningVersion = QStringLiteral("1.3.0")});
    shows(controller);
    // The layout follows in its own time.
    (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *each : all) {
        if (auto *dialog = qobject_cast<QDialog *>(each); dialog != nullptr && dialog->isVisible()) {
            return dialog->grab().toImage();
        }
    }
    return {};
}

Shows update(const QString &version, const QString &notes)
{
    return [=](UpdateUserDriver &driver) {
        driver.showUpdate({.version = version,
                           .notes = notes,
                           .page = QUrl(QStringLiteral("https://www.lumenfold.example/download"))},
                          [](UpdateChoice) {});
    };
}

Shows failure(UpdateCheckError error)
{
    return [=](UpdateUserDriver &driver) { driver.showFailure(error); };
}

} // namespace

std::vector<Scene> updateScenes()
{
    const QString notes = QStringLiteral("## Cards that stay\n\n"
                                         "- Pinned cards keep their place **across restarts**.\n"
                                         "- A card can be dragged into a terminal; it drops the *path*.\n"
                                         "- The deck unfolds with the keyboard: `Super+Alt+0`.\n\n"
                                         "## Fixed\n\n"
                                         "1. Areas snap to windows on the second screen.\n"
                                         "2. No flicker without a compositing manager.\n\n"
                                         "Read [the whole story](https://www.lumenfold.example/1.4).\n");
    const std::vector<std::pair<QString, Shows>> states{
        {QStringLiteral("checking"), [](UpdateUserDriver &driver) { driver.showChecking([] {}); }},
        {QStringLiteral("available"), update(QStringLiteral("1.4.0"), notes)},
        {QStringLiteral("available-long"), update(QStringLiteral("1.4.0-beta.2+build.20261121"), notes.repeated(6))},
        {QStringLiteral("available-no-notes"), update(QStringLiteral("1.4.0"), {})},
        {QStringLiteral("up-to-date"), [](UpdateUserDriver &driver) { driver.showUpToDate(); }},
        {QStringLiteral("unreachable"), failure(UpdateCheckError::unreachable)},
        {QStringLiteral("untrusted"), failure(UpdateCheckError::untrusted)},
        {QStringLiteral("unreadable"), failure(UpdateCheckError::unreadable)},
        {QStringLiteral("without-key"), failure(UpdateCheckError::withoutKey)},
        // One state after another must leave nothing behind.
        {QStringLiteral("available-after-checking"),
         [offer = update(QStringLiteral("1.4.0"), notes)](UpdateUserDriver &driver) {
             driver.showChecking([] {});
             offer(driver);
         }},
    };
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        for (const auto &[name, shows] : states) {
            scenes.push_back({QStringLiteral("update-%1-%2").arg(name, suffix),
                              [shows = shows, scheme = scheme] { return paintWindow(shows, scheme); }});
        }
    }
    return scenes;
}

} // namespace lumenfold::test
