#include "capture/areaselection/AreaSelectionController.h"

#include "capture/areaselection/SelectionView.h"
#include "capture/areaselection/StillPicture.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/panels/Panel.h"
#include "platform/windowlist/WindowList.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::uint32_t escapeKeyCode = 53;

/// Between the overlays' leaving and the completion, so that they are off the screen before the capture that usually
/// follows.
constexpr std::chrono::milliseconds completionDelay{50};

/// Whether an overlay made for one fits the other. Panels that reserve room on the screen do not matter to it.
bool isSamePlace(const Screen &one, const Screen &other)
{
    return one.displayID == other.displayID && one.frame == other.frame && one.backingScale == other.backingScale;
}

bool contains(const std::vector<Screen> &screens, const Screen &screen)
{
    return std::ranges::any_of(screens, [&](const Screen &other) { return isSamePlace(screen, other); });
}

} // namespace

AreaSelectionController::AreaSelectionController(const Collaborators &collaborators)
    : m_panels(collaborators.panels)
    , m_screens(collaborators.screens)
    , m_windowList(collaborators.windowList)
    , m_queue(collaborators.queue)
    , m_captureService(collaborators.captureService)
    , m_ownProcessID(collaborators.ownProcessID)
{
    connect(&m_screens, &Screens::changed, this, &AreaSelectionController::onScreensChanged);
}

AreaSelectionController::~AreaSelectionController() = default;

void AreaSelectionController::present(Completion newCompletion)
{
    completion = std::move(newCompletion);
    onScreensChanged();
}

void AreaSelectionController::finish(std::optional<Rect> rect, std::optional<Screen> screen)
{
    discard(std::exchange(windows, {}));
    Completion pending = std::exchange(completion, nullptr);
    m_queue.after(completionDelay, [pending = std::move(pending), rect, screen] {
        if (pending) {
            pending(rect, screen);
        }
    });
}

/// Takes the overlays off the screen at once and destroys them in a later turn: one of their views may be the caller.
void AreaSelectionController::discard(std::vector<Overlay> overlays)
{
    if (overlays.empty()) {
        return;
    }
    for (const Overlay &overlay : overlays) {
        overlay.panel->setKeyHandler(nullptr);
        overlay.panel->setCursor(CursorShape::arrow);
        overlay.panel->orderOut();
    }
    std::ranges::move(overlays, std::back_inserter(m_discarded));
    m_queue.post([self = QPointer(this)] {
        if (self) {
            self->m_discarded.clear();
        }
    });
}

void AreaSelectionController::onScreensChanged()
{
    if (!completion) {
        return;
    }
    if (m_screens.all().empty()) {
        finish(std::nullopt, std::nullopt);
        return;
    }
    coverScreens();
}

QCoro::Task<> AreaSelectionController::coverScreens()
{
    dropStaleOverlays();
    if (m_isCovering) {
        co_return;
    }
    m_isCovering = true;
    const QPointer<AreaSelectionController> self(this);
    std::vector<Screen> uncovered = uncoveredScreens();
    while (completion && !uncovered.empty()) {
        std::vector<QImage> backdrops(uncovered.size());
        if (!m_panels.isTranslucencyAvailable()) {
            for (std::size_t index = 0; index < uncovered.size(); ++index) {
                QImage backdrop = co_await stillPicture(m_captureService, uncovered[index]);
                if (!self) {
                    co_return;
                }
                backdrops[index] = std::move(backdrop);
            }
        }
        // The screens may have changed while their pictures were taken.
        const std::vector<Screen> present = m_screens.all();
        for (std::size_t index = 0; completion && index < uncovered.size(); ++index) {
            if (contains(present, uncovered[index])) {
                addOverlay(uncovered[index], std::move(backdrops[index]));
            }
        }
        uncovered = uncoveredScreens();
    }
    m_isCovering = false;
}

void AreaSelectionController::dropStaleOverlays()
{
    const std::vector<Screen> present = m_screens.all();
    const auto firstStale = std::stable_partition(
        windows.begin(), windows.end(), [&](const Overlay &overlay) { return contains(present, overlay.screen); });
    std::vector<Overlay> stale(std::make_move_iterator(firstStale), std::make_move_iterator(windows.end()));
    windows.erase(firstStale, windows.end());
    if (!stale.empty() && !windows.empty()) {
        windows.back().panel->makeKey(); // the overlay that got the keys may be one of the stale
    }
    discard(std::move(stale));
}

std::vector<Screen> AreaSelectionController::uncoveredScreens() const
{
    std::vector<Screen> uncovered = m_screens.all();
    std::erase_if(uncovered, [this](const Screen &screen) {
        return std::ranges::any_of(windows,
                                   [&](const Overlay &overlay) { return isSamePlace(overlay.screen, screen); });
    });
    return uncovered;
}

void AreaSelectionController::addOverlay(const Screen &screen, QImage backdrop)
{
    // No activation of the program: an overlay gets the keys without taking the focus from the window that has it.
    const PanelOptions options{.level = PanelLevel::screenSaver,
                               .keyPolicy = PanelKeyPolicy::mayBecomeKey,
                               .constraint = PanelConstraint::unconstrained,
                               .initialFill =
                                   backdrop.isNull() ? std::optional(SelectionView::dimming()) : std::nullopt,
                               .title = tr("LumenFold Area Selection")};
    std::unique_ptr<Panel> panel = m_panels.makePanel(options, screen.frame);
    panel->setContentView(makeView(screen, std::move(backdrop)));
    panel->setCursor(CursorShape::crosshair);
    panel->setKeyHandler([self = QPointer<AreaSelectionController>(this)](const KeyEvent &event) {
        if (!self || event.type != KeyEventType::keyDown || event.keyCode != escapeKeyCode) {
            return false;
        }
        self->finish(std::nullopt, std::nullopt);
        return true;
    });
    panel->makeKey();
    panel->orderFrontRegardless();
    windows.push_back({.screen = screen, .panel = std::move(panel)});
}

std::unique_ptr<SelectionView> AreaSelectionController::makeView(const Screen &screen, QImage backdrop)
{
    auto view = std::make_unique<SelectionView>(SelectionView::Options{
        .screenSize = screen.frame.size(), .backdrop = std::move(backdrop), .snapEdges = [this, screen] {
            return snapEdgesOn(screen);
        }});
    connect(view.get(), &SelectionView::selected, this,
            [this, screen](const Rect &rect) { finish(rect.offsetBy(screen.frame.x, screen.frame.y), screen); });
    connect(view.get(), &SelectionView::clicked, this, [this, screen] { finish(std::nullopt, screen); });
    connect(view.get(), &SelectionView::cancelled, this, [this] { finish(std::nullopt, std::nullopt); });
    return view;
}

SnapEdges AreaSelectionController::snapEdgesOn(const Screen &screen) const
{
    const std::optional<Screen> mainScreen = m_screens.main();
    return snapEdges(m_windowList.onScreenWindows(),
                     {.screenFrame = screen.frame,
                      .mainScreenHeight = mainScreen ? mainScreen->frame.height : screen.frame.height,
                      .ownProcessID = m_ownProcessID});
}

} // namespace lumenfold
