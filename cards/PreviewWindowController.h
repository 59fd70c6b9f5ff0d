#pragma once

#include "cards/CardOptions.h"
#include "cards/CardPanels.h"
#include "cards/ColumnTracking.h"
#include "cards/PreviewCardVariant.h"
#include "cards/PreviewModel.h"
#include "cards/StackGeometry.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"
#include "platform/panels/Panel.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class AppConfig;
class CardEditor;
class CardStore;
class CardViewFactory;
class FullSizePreview;
class MainQueue;
class ScheduledWork;
class Screens;

/// How a card that is dismissed leaves the screen.
enum class DismissMotion {
    fade,
    /// To the left by its panel's width, fading.
    slideLeft,
};

/// Owns every card on screen: the column of stack cards at the bottom left of the main screen, which may be collapsed
/// into a deck, and the pinned cards that float freely. One for the whole program; main thread.
class PreviewWindowController : public QObject {
    Q_OBJECT

public:
    /// What the controller works with; everything must outlive it. A collaborator that is null is not there (yet), and
    /// the calls into it are left out.
    struct Collaborators {
        PanelFactory &panels;
        EventMonitors &monitors;
        const Screens &screens;
        const AppConfig &config;
        MainQueue &queue;
        CardViewFactory &views;
        CardStore *store = nullptr;
        FullSizePreview *fullSizePreview = nullptr;
        CardEditor *editor = nullptr;
    };

    /// One card with its panel. The controller holds it until it is dismissed; callbacks and gestures hold it weakly.
    struct Card {
        std::unique_ptr<Panel> panel;
        std::shared_ptr<PreviewModel> model;
        PreviewCardVariant variant = PreviewCardVariant::stack;
        /// The panel's frame when the move drag that goes on began.
        std::optional<Rect> panStartFrame;
        /// The panel's frame when the resize drag that goes on began.
        std::optional<Rect> resizeStartFrame;
        /// Where the layout sent the panel last; nothing once something else has moved it.
        std::optional<Rect> layoutFrame;
        /// Wholly beneath the next card of a deck, by the last layout.
        bool isCovered = false;
    };
    using CardPointer = std::shared_ptr<Card>;

    explicit PreviewWindowController(const Collaborators &collaborators);
    ~PreviewWindowController() override;

    /// Adds a stack card as the newest of the column. A collapsed column expands first.
    void show(const Image &image, const ShowOptions &options = {});

    /// Adds a pinned card.
    void showPinnedCard(const Image &image, const PinnedCardOptions &options = {});

    /// Shows the cards that the store kept from the last run; those whose image is gone are forgotten.
    void restore();
    /// Writes the list of cards to the store.
    void persistManifest();
    /// Brings the cards of the last dismissal back; false when there is nothing to bring back.
    bool restoreLastDismissed();

    /// Collapses an expanded column that has cards; expands a collapsed one.
    void toggleCollapse();
    [[nodiscard]] bool isCollapsed() const { return m_isCollapsed; }
    [[nodiscard]] bool isDeckRevealed() const { return m_isDeckRevealed; }

    /// Takes every card off the screen while a capture is taken, or shows all of them again. Cards that are added while
    /// they are hidden appear with the others.
    void setHiddenForCapture(bool hidden);

    /// Every card in the order of arrival; a card brought to the front counts as the latest.
    [[nodiscard]] const std::vector<CardPointer> &cards() const { return m_cards; }
    /// The cards of the column, the oldest first, the frontmost last.
    [[nodiscard]] std::vector<CardPointer> stackCards() const;

    /// Makes a stack card the newest of its column; a collapsed deck is lifted into view. Nothing for a pinned card,
    /// for the card that is the newest already, and for one that is not shown.
    void bringToFront(const CardPointer &card);

    /// Removes the card and its stored images; nothing for a card that is not shown.
    void dismiss(const CardPointer &card, DismissMotion motion);

    /// Told whether a dismissal can be undone, whenever that may have changed. May be empty.
    std::function<void(bool available)> onUndoAvailabilityChanged;

private:
    [[nodiscard]] bool isShown(const CardPointer &card) const;

    CardPointer addStackCard(const Image &image, const ShowOptions &options);
    CardPointer addPinnedCard(const Image &image, const PinnedCardOptions &options);
    /// `frame` is the panel's; absent, the panel stands centred on the main screen.
    CardPointer addCard(PreviewModel::Options options, const std::optional<Rect> &frame);
    /// Puts cards that were just added to the column into their places and fades them in.
    void presentStackCards(const std::vector<CardPointer> &added);
    void saveImages(const PreviewModel &model);

    [[nodiscard]] std::vector<StackTarget> currentTargets(const std::vector<CardPointer> &stack) const;
    void layout();
    void sendToTarget(Card &card, const StackTarget &target);
    /// Sets the frame of the card's panel at once, as against the layout's sliding.
    static void place(Card &card, const Rect &frame);
    void scheduleCoveredPanelsOut();

    void collapse();
    void expand();
    void ensureColumnTracking();
    void teardownColumnTracking();
    void handleColumnEvent(const PointerEvent &event);

    void wire(const CardPointer &card);
    void wireDrags(const CardPointer &card);
    void presentEditor(const CardPointer &card);
    void takeEditedImage(const CardPointer &card, const Image &edited, const Image &editorSourceImage,
                         const QString &editorSourceId);

    const Collaborators m_with;
    CardPanels m_panels;
    ColumnTracking m_tracking;
    std::vector<CardPointer> m_cards;
    std::shared_ptr<ScheduledWork> m_coveredPanelsOut;
    bool m_isCollapsed = false;
    bool m_isDeckRevealed = false;
    bool m_isColumnHovered = false;
};

} // namespace lumenfold
