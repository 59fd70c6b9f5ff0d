#pragma once

#include "cards/CardOptions.h"
#include "cards/CardPanels.h"
#include "cards/ColumnGesture.h"
#include "cards/ColumnPills.h"
#include "cards/ColumnTracking.h"
#include "cards/PreviewCardVariant.h"
#include "cards/PreviewModel.h"
#include "cards/StackControlState.h"
#include "cards/StackGeometry.h"
#include "cards/UndoStack.h"
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

/// Whether the user can bring a card that is dismissed back.
enum class RecordUndo { no, yes };

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
        /// The panel has been sent to `layoutFrame`. A panel that is covered and off the screen is left where it is
        /// until it is to be seen: there may be hundreds of them.
        bool isPlaced = true;
    };
    using CardPointer = std::shared_ptr<Card>;

    explicit PreviewWindowController(const Collaborators &collaborators);
    ~PreviewWindowController() override;

    /// Adds a stack card as the newest of the column. A collapsed column expands first.
    void show(const Image &image, const ShowOptions &options = {});

    /// Adds a pinned card.
    void showPinnedCard(const Image &image, const PinnedCardOptions &options = {});

    /// Shows the cards that the store kept from the last run; those whose image is gone are forgotten. They come little
    /// by little, like those of a removal that is undone; the list is written when all are there.
    void restore();
    /// Writes the list of cards to the store.
    void persistManifest();
    /// Brings the cards of the last dismissal back, with their ids, images and, if pinned, frames; false when there is
    /// nothing to bring back. Many cards come little by little, first the newest; each has its place in the column
    /// from the beginning.
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
    void dismiss(const CardPointer &card, DismissMotion motion, RecordUndo recordUndo);

    /// Removes all cards of the column in one step that can be undone; nothing when there are fewer than two.
    void clearAll();

    /// What the pills beside the column show and report.
    [[nodiscard]] StackControlState &controlState() { return m_controlState; }

    /// Told whether a dismissal can be undone, whenever that may have changed. May be empty.
    std::function<void(bool available)> onUndoAvailabilityChanged;

private:
    [[nodiscard]] bool isShown(const CardPointer &card) const;

    /// Cards of one kind that follow each other in the order and are still to be made again, and where they belong.
    struct Restoring {
        /// The oldest first. Those without an image have it in the store.
        UndoStack::Group remaining;
        /// They stand before m_cards[position].
        std::size_t position = 0;
    };

    CardPointer addStackCard(const Image &image, const ShowOptions &options);
    CardPointer addPinnedCard(const Image &image, const PinnedCardOptions &options);
    /// As the newest. `frame` is the panel's; absent, the panel stands centred on the main screen.
    CardPointer addCard(PreviewModel::Options options, const std::optional<Rect> &frame);
    [[nodiscard]] CardPointer makeCard(PreviewModel::Options options, const std::optional<Rect> &frame);
    /// Takes the card out of the order; nothing else.
    void remove(const CardPointer &card);
    /// Expands the column and puts cards that were just added to it into their places.
    void presentStackCards(const std::vector<CardPointer> &added);
    /// Puts them into their places and fades in what of them can be seen.
    void placeStackCards(const std::vector<CardPointer> &added);
    void saveImages(const PreviewModel &model);

    void bringBack(UndoStack::Group group);
    void bringBackOne(const DismissedCard &dismissed);
    /// So many cards of the column are never seen at the same time.
    [[nodiscard]] std::size_t mostCardsSeen() const;
    /// Fills in the image when it is in the store; false when there is none.
    [[nodiscard]] bool loadImage(DismissedCard &card) const;
    /// Fills in both images.
    [[nodiscard]] bool load(DismissedCard &card) const;
    [[nodiscard]] CardPointer makeAgain(const DismissedCard &card);
    /// Of what will be seen, first the newest of the column, then the pinned cards; at last what will not be seen.
    [[nodiscard]] std::vector<Restoring>::iterator nextRun();
    /// Whether the card of the run that is made next will be seen.
    [[nodiscard]] bool isSeen(const Restoring &run) const;
    /// Of the next run: the oldest of pinned cards, which end beneath the others; the newest of the column, whose
    /// frontmost card there is then from the beginning.
    std::vector<CardPointer> makeSomeAgain(std::size_t count);
    void placeMadeAgain(const std::vector<CardPointer> &made);
    void restoreSome();
    void forgetEmptyRuns();
    void scheduleNextRestored();
    /// Every card in its order, those that are still to be made again included: calls one or the other for each.
    void forEachCard(const std::function<void(const CardPointer &)> &shown,
                     const std::function<void(const DismissedCard &)> &awaited) const;

    /// One for each card of the column that is shown. Those that are still to be made again have their places, too.
    [[nodiscard]] std::vector<StackTarget> currentTargets() const;
    /// Of the column with the cards that are still to be made again.
    [[nodiscard]] StackState stackState() const;
    void layout();
    void sendToTarget(Card &card, const StackTarget &target);
    /// Sets the frame of the card's panel at once, as against the layout's sliding.
    static void place(Card &card, const Rect &frame);
    void scheduleCoveredPanelsOut();

    /// Collapsed, the deck peeks. Says so to the pills, and lays nothing out.
    void setCollapsed(bool collapsed);
    void collapse();
    void expand();
    void ensureColumnTracking();
    void teardownColumnTracking();
    void positionPills();
    void bringPillsToFront();
    void handleColumnEvent(const PointerEvent &event);
    void handleHover(bool isInside);
    void handleScroll(const PointerEvent &event);
    /// The newest card whose visible part holds the pointer; null when there is none.
    [[nodiscard]] CardPointer stackCardAt(Point location) const;

    void wire(const CardPointer &card);
    void wireDrags(const CardPointer &card);
    void presentEditor(const CardPointer &card);
    void takeEditedImage(const CardPointer &card, const Image &edited, const Image &editorSourceImage,
                         const QString &editorSourceId);

    const Collaborators m_with;
    StackControlState m_controlState;
    CardPanels m_panels;
    ColumnPills m_pills;
    ColumnTracking m_tracking;
    ColumnGesture m_gesture;
    UndoStack m_undo;
    std::vector<CardPointer> m_cards;
    /// In the order of the cards.
    std::vector<Restoring> m_restoring;
    bool m_haveUnseenWaited = false;
    /// The list on disk may name cards that cannot be read; it is written again when that is known of all.
    bool m_isListToBeWritten = false;
    std::shared_ptr<ScheduledWork> m_nextRestored;
    std::shared_ptr<ScheduledWork> m_coveredPanelsOut;
    /// Set with setCollapsed() alone.
    bool m_isCollapsed = false;
    bool m_isDeckRevealed = false;
    bool m_isColumnHovered = false;
};

} // namespace lumenfold
