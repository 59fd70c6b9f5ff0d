#pragma once

#include "cards/face/CardActions.h"
#include "platform/panels/PanelContentShape.h"

#include <QRegion>
#include <QWidget>

#include <memory>

namespace lumenfold {

class ActionPanel;
class Appearance;
class CornerButton;
class DragFolder;
class DragOut;
class DragSessions;
class DraggableImageView;
class EventMonitors;
class PanOverlayView;
class PanelFactory;
class PreviewModel;
class ResizeOverlayView;
class Screens;
class StatusBadge;

/// The face of one card: its picture with a border and a shadow, the buttons at its corners, the actions that come with
/// the pointer, the status of its upload, and what a pinned card is moved and resized by. Never moves or resizes its
/// window: whatever the user does ends in a callback of the model.
class PreviewView : public QWidget, public PanelContentShape {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        const PanelFactory &panels;
        const Appearance &appearance;
        const Screens &screens;
        EventMonitors &monitors;
        CardActions::Collaborators actions;
        /// Without both of them no picture is dragged out.
        DragSessions *dragSessions = nullptr;
        DragFolder *dragFolder = nullptr;
    };

    PreviewView(std::shared_ptr<PreviewModel> model, const Collaborators &collaborators);
    ~PreviewView() override;

    /// The visible card in the view's coordinates.
    [[nodiscard]] QRect content() const;

    /// Whether the pointer is over the content.
    [[nodiscard]] bool isHovering() const { return m_isHovering; }

    [[nodiscard]] QRegion opaqueShape(double scale) const override;
    [[nodiscard]] QRegion pointerShape() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    class Frame;

    /// What of the model decides which parts there are.
    struct Shown {
        bool isBehind = false;
        bool isCollapsed = false;
    };

    void addImage();
    void addActions();
    void addOverlays();
    void addCornerButtons();
    void follow();
    void arrange(const Shown &shown);
    void setHovering(bool hovering);
    [[nodiscard]] bool isPinned() const;
    [[nodiscard]] QRect leadingButtonPlace() const;
    [[nodiscard]] QRect trailingButtonPlace() const;
    [[nodiscard]] const QRegion &cardShape() const;

    const std::shared_ptr<PreviewModel> m_model;
    const Collaborators m_with;
    const CardActions m_actions;
    std::unique_ptr<DragOut> m_dragOut;
    Shown m_shown;
    bool m_isHovering = false;

    DraggableImageView *m_image;
    ActionPanel *m_actionPanel;
    /// Of a pinned card.
    PanOverlayView *m_pan = nullptr;
    ResizeOverlayView *m_resize = nullptr;
    StatusBadge *m_badge;
    QWidget *m_catcher;
    Frame *m_frame;
    CornerButton *m_close;
    /// Of a card in the column.
    CornerButton *m_pin = nullptr;
    /// In points, for that size of the view; the pointer's shape is asked for before each painting.
    mutable QSize m_shapeSize;
    mutable QRegion m_cardShape;
};

} // namespace lumenfold
