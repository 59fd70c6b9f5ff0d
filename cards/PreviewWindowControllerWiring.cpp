/// What happens when a card's view reports what the user does.
#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardEditor.h"
#include "cards/CardSizing.h"
#include "cards/FullSizePreview.h"

#include <QPointer>
#include <QWidget>

#include <utility>

namespace lumenfold {
namespace {

using Card = PreviewWindowController::Card;
using CardPointer = PreviewWindowController::CardPointer;

/// A callback of the card's model that does nothing once the controller or the card is gone. It takes hold of the card
/// while it runs; the action may dismiss it.
template <typename Action>
auto whileAlive(PreviewWindowController *controller, const CardPointer &card, Action action)
{
    return [self = QPointer(controller), weak = std::weak_ptr(card), action](auto... arguments) {
        const CardPointer held = weak.lock();
        if (self && held) {
            action(held, arguments...);
        }
    };
}

} // namespace

void PreviewWindowController::wire(const CardPointer &card)
{
    PreviewModel &model = *card->model;
    model.onDismiss = whileAlive(
        this, card, [this](const CardPointer &held) { dismiss(held, DismissMotion::fade, RecordUndo::yes); });
    // Like a card that could not be restored at all; only that this one's file had to be read to know.
    model.onImageUnreadable =
        whileAlive(this, card, [this](const CardPointer &held) { dismiss(held, DismissMotion::fade, RecordUndo::no); });
    model.onPinRequested = whileAlive(this, card, [this](const CardPointer &held) {
        showPinnedCard(held->model->image(), {.editorSourceImage = held->model->editorSourceImage(),
                                              .editorSourceId = held->model->editorSourceId()});
    });
    model.onBringToFront = whileAlive(this, card, [this](const CardPointer &held) { bringToFront(held); });
    model.onExpandRequested = whileAlive(this, card, [this](const CardPointer &held) {
        if (m_with.fullSizePreview) {
            m_with.fullSizePreview->present(held->model->image());
        }
    });
    model.onEditRequested = whileAlive(this, card, [this](const CardPointer &held) { presentEditor(held); });
    model.onSizeChanged = whileAlive(this, card, [](const CardPointer &held, Size size) {
        const Point origin = held->panel->frame().origin();
        const double margins = 2 * cardHitMargin(held->variant);
        place(*held, {origin.x, origin.y, size.width + margins, size.height + margins});
    });
    wireDrags(card);
}

void PreviewWindowController::wireDrags(const CardPointer &card)
{
    PreviewModel &model = *card->model;
    model.onPanDragBegan = whileAlive(this, card, [this](const CardPointer &held) {
        held->panStartFrame = held->panel->frame();
        bringToFront(held);
    });
    model.onPanDragChanged = whileAlive(this, card, [](const CardPointer &held, Size translation) {
        if (held->panStartFrame) {
            place(*held, held->panStartFrame->offsetBy(translation.width, translation.height));
        }
    });
    model.onPanDragEnded = whileAlive(this, card, [this](const CardPointer &held) {
        held->panStartFrame.reset();
        persistManifest();
    });
    model.onResizeDragBegan = whileAlive(this, card, [](const CardPointer &held, PreviewResizeCorner) {
        held->resizeStartFrame = held->panel->frame();
    });
    model.onResizeDragChanged =
        whileAlive(this, card, [](const CardPointer &held, PreviewResizeCorner corner, Size translation) {
            const Rect start = held->resizeStartFrame.value_or(held->panel->frame());
            place(*held, cornerResizedFrame(start, cardHitMargin(held->variant),
                                            cardAspectRatio(held->variant, held->model->image()), corner, translation));
        });
    model.onResizeDragEnded = whileAlive(this, card, [this](const CardPointer &held) {
        held->model->syncCardSizeFromWindow(held->panel->frame().insetBy(cardHitMargin(held->variant)).size());
        held->resizeStartFrame.reset();
        persistManifest();
    });
}

void PreviewWindowController::presentEditor(const CardPointer &card)
{
    if (!m_with.editor) {
        return;
    }
    const Image source = card->model->editorSourceImage();
    const QString sourceId = card->model->editorSourceId();
    m_with.editor->present(source, sourceId,
                           [self = QPointer(this), weak = std::weak_ptr(card), source, sourceId](const Image &edited) {
                               if (self) {
                                   self->takeEditedImage(weak.lock(), edited, source, sourceId);
                               }
                           });
}

void PreviewWindowController::takeEditedImage(const CardPointer &card, const Image &edited,
                                              const Image &editorSourceImage, const QString &editorSourceId)
{
    if (!card || !isShown(card) || !m_with.config.replaceCardOnEdit()) {
        show(edited, {.editorSourceImage = editorSourceImage, .editorSourceId = editorSourceId});
        return;
    }
    const Rect frame = card->panel->frame();
    const QString id = card->model->screenshotId();
    dismiss(card, DismissMotion::fade, RecordUndo::no);
    if (card->variant == PreviewCardVariant::pinned) {
        showPinnedCard(
            edited,
            {.editorSourceImage = editorSourceImage, .editorSourceId = editorSourceId, .frame = frame, .id = id});
    } else {
        show(edited, {.editorSourceImage = editorSourceImage, .editorSourceId = editorSourceId, .id = id});
    }
}

} // namespace lumenfold
