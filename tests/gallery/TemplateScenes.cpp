#include "tests/gallery/TemplateScenes.h"

#include "app/theme/WindowTheme.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/ServiceError.h"
#include "service/templates/TemplateGrid.h"
#include "service/templates/TemplatePickerView.h"
#include "service/templates/TemplatePreviews.h"
#include "service/templates/TemplateStore.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakePreviewDownloads.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QApplication>
#include <QBuffer>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollBar>

#include <array>
#include <memory>

namespace lumenfold::test {
namespace {

/// What remains of the settings window below its tabs.
constexpr QSize pickerSize{520, 416};

/// Something that could be a template: a ground, a frame, and a place for the screenshot.
QByteArray templatePicture(int number)
{
    const std::array sizes{QSize(800, 600), QSize(1200, 630), QSize(600, 900), QSize(900, 900)};
    QImage picture(sizes.at(static_cast<std::size_t>(number) % sizes.size()), QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground({0, 0}, {double(picture.width()), double(picture.height())});
    ground.setColorAt(0, QColor::fromHsv(number * 47 % 360, 150, 235));
    ground.setColorAt(1, QColor::fromHsv((number * 47 + 60) % 360, 190, 160));
    painter.fillRect(picture.rect(), ground);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 230));
    const int inset = picture.width() / 8;
    painter.drawRoundedRect(picture.rect().adjusted(inset, inset, -inset, -inset), 24, 24);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "png");
    return bytes;
}

std::vector<LumenfoldTemplate> someTemplates(int count)
{
    const std::array names{"Banner", "Team logo", "Release notes with a name that is much too long for its cell",
                           "Poster", "Café menu", "Social post"};
    std::vector<LumenfoldTemplate> templates;
    for (int number = 0; number < count; ++number) {
        const char *name = names.at(static_cast<std::size_t>(number) % names.size());
        LumenfoldTemplate made{.id = QString::number(number), .name = QString::fromUtf8(name)};
        made.editedAt = QStringLiteral("2024-%1").arg(9999 - number);
        if (number % 6 != 3) {
            made.previewUrl = QStringLiteral("https://files.example/%1.png").arg(number);
        }
        templates.push_back(made);
    }
    return templates;
}

struct PickerState {
    bool isSignedIn = true;
    bool isLoading = false;
    int templates = 14;
    int selected = -1;
    QString search;
    std::optional<ServiceError> error;
    bool hasKeyboard = false;
    QSize size = pickerSize;
};

QImage paintPicker(const PickerState &state, ColorScheme scheme)
{
    FakeLumenfoldService service;
    FakeApiKeySetupWindow apiKeySetup;
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    TemplateStore store(defaults, notifications);
    FakePreviewDownloads downloads;
    FakeAppearance appearance;
    appearance.setColorScheme(scheme);
    service.templates = someTemplates(state.templates);
    if (state.selected >= 0) {
        store.select(service.templates.at(static_cast<std::size_t>(state.selected)));
    }
    auto picker = std::make_unique<TemplatePickerView>(
        TemplatePickerView::Collaborators{.picker = {.service = service,
                                                     .isSignedIn = [&state] { return state.isSignedIn; },
                                                     .store = store,
                                                     .notifications = notifications,
                                                     .apiKeySetup = apiKeySetup},
                                          .downloads = downloads,
                                          .cache = std::nullopt});
    WindowTheme::install(*picker, appearance);
    picker->resize(state.size);
    picker->show();
    if (service.running() > 0 && !state.isLoading) {
        state.error ? service.fail(*state.error) : service.succeed();
    }
    picker->findChild<QLineEdit *>()->setText(state.search);
    if (state.hasKeyboard) {
        picker->activateWindow();
        auto *withKeyboard = picker->findChild<TemplateGrid *>();
        withKeyboard->setFocus(Qt::TabFocusReason);
        withKeyboard->setCurrentIndex(withKeyboard->model()->index(1, 0));
    }
    const auto *previews = picker->findChild<TemplatePreviews *>();
    const auto *grid = picker->findChild<TemplateGrid *>();
    (void)waitFor([&] {
        for (const QString &address : downloads.running()) {
            downloads.end(address, templatePicture(QUrl(address).fileName().section(u'.', 0, 0).toInt()));
        }
        return !grid->isVisible() || (!downloads.asked.isEmpty() && previews->loads() == 0);
    });
    const QImage seen = picker->grab().toImage();
    picker.reset();
    while (service.running() > 0) {
        service.succeed();
    }
    return seen;
}

} // namespace

std::vector<Scene> templateScenes()
{
    const QString page = QString(QStringLiteral("<html><body><h1>Bad Gateway</h1>%1</body></html>"))
                             .arg(QStringLiteral("Upstream did not answer. ").repeated(60));
    const std::vector<std::pair<QString, PickerState>> states{
        {QStringLiteral("not-connected"), {.isSignedIn = false}},
        {QStringLiteral("loading"), {.isLoading = true, .selected = 2}},
        {QStringLiteral("error"), {.error = ServiceError::server(500, QStringLiteral("oops"))}},
        {QStringLiteral("error-long"), {.error = ServiceError::server(502, page)}},
        {QStringLiteral("empty"), {.templates = 0}},
        {QStringLiteral("no-match"), {.search = QStringLiteral("brochure")}},
        {QStringLiteral("no-match-long"), {.search = QString(160, u'w')}},
        {QStringLiteral("grid"), {}},
        {QStringLiteral("grid-selected"), {.selected = 4}},
        {QStringLiteral("grid-keyboard"), {.selected = 1, .hasKeyboard = true}},
        {QStringLiteral("grid-search"), {.selected = 1, .search = QStringLiteral("logo")}},
        {QStringLiteral("grid-wide"), {.templates = 40, .selected = 1, .size = {900, 500}}},
    };
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        for (const auto &[name, state] : states) {
            scenes.push_back({QStringLiteral("templates-%1-%2").arg(name, suffix),
                              [state = state, scheme = scheme] { return paintPicker(state, scheme); }});
        }
    }
    return scenes;
}

} // namespace lumenfold::test
