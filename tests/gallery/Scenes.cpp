#include "tests/gallery/Scenes.h"

#include "tests/gallery/AccountScenes.h"
#include "tests/gallery/EditorScenes.h"
#include "tests/gallery/MenuScenes.h"
#include "tests/gallery/SettingsScenes.h"
#include "tests/gallery/TemplateScenes.h"
#include "tests/gallery/UpdateScenes.h"

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "cards/CardSizing.h"
#include "cards/PreviewModel.h"
#include "cards/StackControlState.h"
#include "cards/face/ActionPanel.h"
#include "cards/face/DraggableImageView.h"
#include "cards/face/ImagePreviewView.h"
#include "cards/face/PreviewView.h"
#include "cards/face/StackControl.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QEnterEvent>
#include <QLinearGradient>
#include <QPainter>

#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace lumenfold::test {
namespace {

/// What the views need around them.
struct Stage {
    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    FakePasteboard pasteboard;
    ActionHandler actions{pasteboard, config};
    FakeMainQueue queue;
    FakeWorkspace workspace;
    FakePanelFactory panels{queue};
    FakeAppearance appearance;
    FakeEventMonitors monitors;

    [[nodiscard]] PreviewView::Collaborators collaborators()
    {
        return {.panels = panels,
                .appearance = appearance,
                .screens = screens,
                .monitors = monitors,
                .actions = {.actions = actions, .config = config, .queue = queue, .workspace = workspace}};
    }
};

/// A window with a document in it: light, dark and coloured parts, and fine lines.
QImage screenshot(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky({0, 0}, {double(size.width()), double(size.height())});
    sky.setColorAt(0, QColor(76, 94, 172));
    sky.setColorAt(0.6, QColor(214, 120, 140));
    sky.setColorAt(1, QColor(248, 196, 120));
    painter.fillRect(picture.rect(), sky);
    const QRectF window =
        QRectF(picture.rect())
            .adjusted(size.width() * 0.14, size.height() * 0.16, -size.width() * 0.14, -size.height() * 0.12);
    const double unit = size.height() / 40.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(252, 252, 253));
    painter.drawRoundedRect(window, unit, unit);
    painter.setBrush(QColor(44, 48, 58));
    painter.drawRoundedRect(QRectF(window.topLeft(), QSizeF(window.width(), 3 * unit)), unit, unit);
    painter.setBrush(QColor(190, 194, 204));
    for (double y = window.top() + 5 * unit; y < window.bottom() - 2 * unit; y += 2 * unit) {
        const double part = 0.55 + 0.35 * std::fmod(y * 0.37, 1.0);
        painter.drawRoundedRect(QRectF(window.left() + 2 * unit, y, (window.width() - 4 * unit) * part, 0.8 * unit),
                                unit / 3, unit / 3);
    }
    return picture;
}

QSize points(Size size)
{
    return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

/// The view on a desktop that is light at the left and dark at the right, because shadows and borders must do on both.
/// Cut to those pixels where windows do not blend.
QImage onDesktop(QWidget &view, const std::optional<QRegion> &cut = std::nullopt)
{
    QImage seen = view.grab().toImage();
    if (cut) {
        const double scale = seen.devicePixelRatio();
        seen.setDevicePixelRatio(1);
        QPainter knife(&seen);
        knife.setCompositionMode(QPainter::CompositionMode_Clear);
        knife.setClipRegion(QRegion(seen.rect()) - *cut);
        knife.fillRect(seen.rect(), Qt::transparent);
        knife.end();
        seen.setDevicePixelRatio(scale);
    }
    QImage picture(seen.size(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(seen.devicePixelRatio());
    QPainter painter(&picture);
    QLinearGradient desktop({0, 0}, {double(view.width()), double(view.height()) / 2});
    desktop.setColorAt(0, QColor(238, 240, 243));
    desktop.setColorAt(1, QColor(66, 72, 84));
    painter.fillRect(view.rect(), desktop);
    painter.drawImage(0, 0, seen);
    return picture;
}

void letItBePainted()
{
    (void)staysTrue([] { return true; }, std::chrono::milliseconds(30));
}

struct CardState {
    PreviewCardVariant variant = PreviewCardVariant::stack;
    QSize picture{1280, 800};
    bool isHovered = false;
    bool isBehind = false;
    bool isCollapsed = false;
    PreviewModel::Status status;
    double width = 0;
    bool isBlended = true;
};

QImage paintCard(const CardState &state, ColorScheme scheme)
{
    Stage stage;
    stage.appearance.setColorScheme(scheme);
    stage.panels.setTranslucencyAvailable(state.isBlended);
    auto model = std::make_shared<PreviewModel>(
        stage.config,
        PreviewModel::Options{.image = Image::fromPixels(screenshot(state.picture)), .variant = state.variant});
    if (state.variant == PreviewCardVariant::pinned) {
        model->lockSizeToImageRatio();
    }
    if (state.width > 0) {
        model->setCardWidth(state.width);
    }
    PreviewView view(model, stage.collaborators());
    const int margins = 2 * static_cast<int>(cardHitMargin(state.variant));
    view.setAttribute(Qt::WA_TranslucentBackground);
    view.resize(points(model->cardSize()) + QSize(margins, margins));
    model->setDeckBehind(state.isBehind);
    model->setCollapsed(state.isCollapsed);
    model->setStatus(state.status);
    view.show();
    if (state.isHovered) {
        auto *image = view.findChild<DraggableImageView *>();
        QEnterEvent event({}, {}, {});
        QApplication::sendEvent(image, &event);
        const auto *panel = view.findChild<ActionPanel *>();
        (void)waitFor([panel] { return panel->isHidden() || panel->opacity() == 1; });
    }
    letItBePainted();
    return state.isBlended ? onDesktop(view) : onDesktop(view, view.opaqueShape(view.devicePixelRatio()));
}

QImage paintPills(bool isCollapsed, ColorScheme scheme)
{
    Stage stage;
    stage.appearance.setColorScheme(scheme);
    StackControlState state;
    state.setCollapsed(isCollapsed);
    QWidget both;
    both.setAttribute(Qt::WA_TranslucentBackground);
    StackControlButton collapse(state, stage.appearance, stage.panels);
    ClearAllButton clear(state, stage.appearance, stage.panels);
    collapse.setParent(&both);
    clear.setParent(&both);
    clear.setGeometry(0, 0, 156, 50);
    collapse.setGeometry(44, 50, 68, 48);
    both.resize(156, 98);
    both.show();
    letItBePainted();
    QImage seen = onDesktop(both);
    collapse.setParent(nullptr);
    clear.setParent(nullptr);
    return seen;
}

QImage paintPreview(QSize picture, ColorScheme scheme)
{
    Stage stage;
    stage.appearance.setColorScheme(scheme);
    ImagePreviewView view({.image = Image::fromPixels(screenshot(picture)),
                           .hitMargin = AppConfig::previewPinnedHitMargin,
                           .onClose = {}},
                          stage.appearance, stage.panels);
    view.setAttribute(Qt::WA_TranslucentBackground);
    view.resize(QSize(picture.scaled(520, 400, Qt::KeepAspectRatio)) + QSize(104, 104));
    view.show();
    (void)waitFor([&view] { return view.picture().isComplete(); });
    return onDesktop(view);
}

} // namespace

std::vector<Scene> allScenes()
{
    const PreviewModel::Status uploading = PreviewModel::Uploading{};
    const PreviewModel::Status done = PreviewModel::Uploaded{};
    const PreviewModel::Status linked = PreviewModel::Uploaded{QUrl(QStringLiteral("https://files.example/a.png"))};
    const PreviewModel::Status failed = PreviewModel::Failed{QStringLiteral("Upload failed")};
    const PreviewModel::Status keyless = PreviewModel::Failed{QStringLiteral("API key required")};
    const std::vector<std::pair<QString, CardState>> cards{
        {QStringLiteral("rest"), {}},
        {QStringLiteral("hover"), {.isHovered = true}},
        {QStringLiteral("hover-smallest"), {.isHovered = true, .width = 140}},
        {QStringLiteral("uploading"), {.status = uploading}},
        {QStringLiteral("uploading-hover"), {.isHovered = true, .status = uploading}},
        {QStringLiteral("done"), {.status = done}},
        {QStringLiteral("done-with-address"), {.status = linked}},
        {QStringLiteral("failed"), {.status = failed}},
        {QStringLiteral("key-required"), {.status = keyless}},
        {QStringLiteral("behind"), {.isHovered = true, .isBehind = true}},
        {QStringLiteral("collapsed"), {.isHovered = true, .isCollapsed = true}},
        {QStringLiteral("pinned"), {.variant = PreviewCardVariant::pinned, .isHovered = true}},
        {QStringLiteral("pinned-tall"), {.variant = PreviewCardVariant::pinned, .picture = {300, 500}, .width = 140}},
        {QStringLiteral("tall-picture"), {.picture = {300, 900}}},
        {QStringLiteral("no-compositor"), {.isHovered = true, .isBlended = false}},
        {QStringLiteral("pinned-no-compositor"), {.variant = PreviewCardVariant::pinned, .isBlended = false}},
    };
    std::vector<Scene> scenes;
    for (const auto &[suffix, scheme] : std::array{std::pair(QStringLiteral("light"), ColorScheme::light),
                                                   std::pair(QStringLiteral("dark"), ColorScheme::dark)}) {
        const auto add = [&](const QString &name, std::function<QImage()> paint) {
            scenes.push_back({name + u'-' + suffix, std::move(paint)});
        };
        for (const auto &[name, state] : cards) {
            add(QStringLiteral("card-") + name, [state = state, scheme = scheme] { return paintCard(state, scheme); });
        }
        add(QStringLiteral("pills-expanded"), [scheme = scheme] { return paintPills(false, scheme); });
        add(QStringLiteral("pills-collapsed"), [scheme = scheme] { return paintPills(true, scheme); });
        add(QStringLiteral("preview"), [scheme = scheme] { return paintPreview({1280, 800}, scheme); });
        add(QStringLiteral("preview-tall"), [scheme = scheme] { return paintPreview({300, 600}, scheme); });
        add(QStringLiteral("preview-icon"), [scheme = scheme] { return paintPreview({24, 24}, scheme); });
    }
    for (Scene &scene : templateScenes()) {
        scenes.push_back(std::move(scene));
    }
    for (Scene &scene : menuScenes()) {
        scenes.push_back(std::move(scene));
    }
    for (Scene &scene : accountScenes()) {
        scenes.push_back(std::move(scene));
    }
    for (Scene &scene : settingsScenes()) {
        scenes.push_back(std::move(scene));
    }
    for (Scene &scene : editorScenes()) {
        scenes.push_back(std::move(scene));
    }
    for (Scene &scene : updateScenes()) {
        scenes.push_back(std::move(scene));
    }
    return scenes;
}

} // namespace lumenfold::test
