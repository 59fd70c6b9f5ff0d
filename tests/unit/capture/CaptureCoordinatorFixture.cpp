#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewWindowController.h"
#include "tests/unit/capture/Processes.h"

#include <QApplication>
#include <QMouseEvent>

#include <algorithm>

namespace lumenfold::test {
namespace {

void send(FakePanel &panel, QEvent::Type type, Point at)
{
    const QPointF position(at.x, panel.frame().height - at.y);
    QMouseEvent event(type, position, position, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(panel.contentView(), &event);
}

} // namespace

CaptureCoordinatorTest::CaptureCoordinatorTest()
{
    screens.setScreens({left});
    manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
    manager.onCall = [this](const QString &call) {
        visibleCardsAtRequest = visibleCards();
        journal.append(call);
    };
    alerts.onCall = [this](const QString &call) { journal.append(call); };
    workspace.onCall = [this](const QString &call) { journal.append(call); };
    makeCoordinator();
}

CaptureCoordinatorTest::~CaptureCoordinatorTest() = default;

void CaptureCoordinatorTest::makeCoordinator()
{
    const ScreenCaptureService service(manager, screens, ownPid);
    coordinator.reset();
    coordinator = std::make_unique<CaptureCoordinator>(CaptureCoordinator::Collaborators{
        .captureService = service,
        .areaController =
            std::make_unique<AreaSelectionController>(AreaSelectionController::Collaborators{.panels = panels,
                                                                                             .screens = screens,
                                                                                             .windowList = windows,
                                                                                             .queue = queue,
                                                                                             .captureService = service,
                                                                                             .ownProcessID = ownPid}),
        .previewController =
            std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{.panels = panels,
                                                                                             .monitors = monitors,
                                                                                             .screens = screens,
                                                                                             .config = config,
                                                                                             .queue = queue,
                                                                                             .views = views,
                                                                                             .store = &store,
                                                                                             .fullSizePreview = nullptr,
                                                                                             .editor = nullptr}),
        .actions = actions,
        .screens = screens,
        .defaults = defaults,
        .queue = queue,
        .alerts = alerts,
        .workspace = workspace,
        .editorWindow = [this] { return editor; }});
}

std::vector<FakePanel *> CaptureCoordinatorTest::visible(PanelLevel level) const
{
    std::vector<FakePanel *> found = panels.stacking();
    std::erase_if(found, [&](const FakePanel *panel) { return panel->options().level != level; });
    return found;
}

std::size_t CaptureCoordinatorTest::cardCount() const
{
    const auto models = views.models();
    return models.size() - static_cast<std::size_t>(std::ranges::count(models, nullptr));
}

void CaptureCoordinatorTest::select(Point from, Point to, std::size_t overlay)
{
    FakePanel &panel = *overlays().at(overlay);
    send(panel, QEvent::MouseButtonPress, from);
    send(panel, QEvent::MouseMove, to);
    send(panel, QEvent::MouseButtonRelease, to);
}

void CaptureCoordinatorTest::pressEscape()
{
    panels.keyPanel()->pressKey({.type = KeyEventType::keyDown, .keyCode = 53});
}

void CaptureCoordinatorTest::failCapturesWith(const QString &domain)
{
    manager.image = [domain](const auto &) {
        return tl::unexpected(PlatformError{domain, 5, QStringLiteral("it broke")});
    };
}

void CaptureCoordinatorTest::denyPermission()
{
    failCapturesWith(QString::fromLatin1(streamErrorDomain));
}

} // namespace lumenfold::test
