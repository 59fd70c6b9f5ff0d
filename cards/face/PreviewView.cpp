#include "cards/face/PreviewView.h"

#include "app/configuration/AppConfig.h"
#include "app/configuration/Palette.h"
#include "cards/CardSizing.h"
#include "cards/CornerResizeHandle.h"
#include "cards/DragOut.h"
#include "cards/PanOverlay.h"
#include "cards/PreviewModel.h"
#include "cards/ResizeOverlay.h"
#include "cards/face/ActionPanel.h"
#include "cards/face/CornerButton.h"
#include "cards/face/DraggableImageView.h"
#include "cards/face/FaceStyle.h"
#include "cards/face/RoundedRegion.h"
#include "cards/face/StatusBadge.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"

#include <QAbstractButton>
#include <QPainter>
#include <QPainterPath>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold {
namespace {

constexpr CardShadow cardShadow{
    .cornerRadius = facestyle::cardCornerRadius, .blurRadius = 18, .opacity = 0.4, .offset = {0, 10}};

/// From the content's corner to the mark by which it is resized.
constexpr double handleInset = 8;
constexpr double handleRadius = 6;
/// The straight arm of the mark beyond its bend.
constexpr double handleArm = 3;
/// Half the side of the square in which the corner can be taken hold of.
constexpr double handleGrab = 22;
/// The resize band reaches this far into the card.
constexpr double resizeBandInside = 6;
constexpr double handleOuterWidth = 3.5;
constexpr double handleInnerWidth = 2.5;

/// Calls a callback of the model, which may replace it or let the whole card go.
template <typename... Parameters, typename... Arguments>
void call(std::function<void(Parameters...)> callback, Arguments... arguments)
{
    if (callback) {
        callback(arguments...);
    }
}

QString accessibleNameOf(const PreviewModel &model)
{
    const QString kind = model.variant() == PreviewCardVariant::pinned ? PreviewView::tr("Pinned screenshot")
                                                                       : PreviewView::tr("Screenshot");
    const auto pixels = model.image().pixelSize();
    return pixels ? PreviewView::tr("%1, %2 × %3 pixels").arg(kind).arg(pixels->width).arg(pixels->height) : kind;
}

/// Lies over a card that is behind another one and takes its clicks. Paints nothing.
class BringToFrontCatcher : public QAbstractButton {
public:
    BringToFrontCatcher(std::shared_ptr<PreviewModel> model, QWidget *parent) : QAbstractButton(parent)
    {
        setFocusPolicy(Qt::NoFocus);
        setToolTip(PreviewView::tr("Bring to front"));
        setAccessibleName(toolTip());
        connect(this, &QAbstractButton::clicked, this, [card = std::move(model)] { call(card->onBringToFront); });
    }

protected:
    void paintEvent(QPaintEvent *) override {}
};

void paintHandle(QPainter &painter, const CornerResizeHandle &handle, const QRectF &area, ColorScheme scheme)
{
    const QPainterPath path = handle.path(area);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette::resizeHandleBorder.in(scheme), handleOuterWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(path);
    painter.setPen(QPen(palette::previewCornerButtonBg.in(scheme), handleInnerWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(path);
}

} // namespace

/// What lies on the content and takes no presses: the border, the marks of the corners, and the shadows of the corner
/// buttons.
class PreviewView::Frame : public QWidget {
public:
    explicit Frame(PreviewView &view) : QWidget(&view), m_view(view) { setAttribute(Qt::WA_TransparentForMouseEvents); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const ColorScheme scheme = m_view.m_with.appearance.colorScheme();
        const QRectF content(m_view.content());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        facestyle::paintRounded(painter, content, facestyle::cardCornerRadius,
                                {Qt::NoBrush, palette::previewStroke.in(scheme)});
        if (m_view.isPinned() && !m_view.m_shown.isBehind) {
            using Corner = CornerResizeHandle::Corner;
            constexpr double side = handleRadius + handleArm;
            const QPointF inset(handleInset, handleInset);
            const QPointF extent(side, side);
            paintHandle(painter, {.corner = Corner::topLeft, .cornerRadius = handleRadius},
                        {content.topLeft() + inset, content.topLeft() + inset + extent}, scheme);
            paintHandle(painter, {.corner = Corner::bottomRight, .cornerRadius = handleRadius},
                        {content.bottomRight() - inset - extent, content.bottomRight() - inset}, scheme);
        }
        if (m_view.m_with.panels.isTranslucencyAvailable()) {
            for (const CornerButton *button : {m_view.m_close, m_view.m_pin}) {
                if (button != nullptr) {
                    paintCornerButtonShadow(painter, button->geometry());
                }
            }
        }
    }

private:
    const PreviewView &m_view;
};

PreviewView::PreviewView(std::shared_ptr<PreviewModel> model, const Collaborators &collaborators)
    : m_model(std::move(model)), m_with(collaborators), m_actions(m_model, collaborators.actions)
{
    addImage();
    addActions();
    addOverlays();
    addCornerButtons();
    follow();
    arrange({.isBehind = m_model->deckBehind(), .isCollapsed = m_model->collapsed()});
}

PreviewView::~PreviewView() = default;

bool PreviewView::isPinned() const
{
    return m_model->variant() == PreviewCardVariant::pinned;
}

void PreviewView::addImage()
{
    if (m_with.dragSessions != nullptr && m_with.dragFolder != nullptr) {
        m_dragOut = std::make_unique<DragOut>(*m_with.dragSessions, *m_with.dragFolder);
        m_dragOut->setImage(m_model->image());
    }
    const auto dragOut = [this](QPoint pressedAt) {
        if (m_dragOut) {
            m_dragOut->pointerDragged({.view = m_image, .picture = m_image->visiblePicture(), .hotSpot = pressedAt});
        }
    };
    m_image = new DraggableImageView(m_model->image(),
                                     {.onDoubleClick = [this] { call(m_model->onExpandRequested); },
                                      .onDragBegan = dragOut,
                                      .buttons = [this] { return m_actionPanel->buttons(); },
                                      .onUnreadable = [this] { call(m_model->onImageUnreadable); }},
                                     m_with.panels, this);
    m_image->setAccessibleName(accessibleNameOf(*m_model));
    m_image->installEventFilter(this);
}

void PreviewView::addActions()
{
    // Children of the picture, so that the presses that they do not take are the picture's.
    m_actionPanel = new ActionPanel({.onEdit = [this] { m_actions.edit(); },
                                     .onSave = [this] { m_actions.save(); },
                                     .onCopy = [this] { m_actions.copy(); }},
                                    m_with.appearance, m_with.panels, m_image);
    if (isPinned()) {
        m_pan = new PanOverlayView(m_with.screens, m_image);
        m_pan->apply({.onBegan = [this] { call(m_model->onPanDragBegan); },
                      .onChanged = [this](Size translation) { call(m_model->onPanDragChanged, translation); },
                      .onEnded = [this] { call(m_model->onPanDragEnded); },
                      .onDoubleClick = [this] { m_image->expand(); }});
    }
    m_badge = new StatusBadge([this](const QUrl &uploaded) { m_actions.open(uploaded); }, m_with.appearance, m_image);
    m_catcher = new BringToFrontCatcher(m_model, m_image);
}

void PreviewView::addOverlays()
{
    m_frame = new Frame(*this);
    if (isPinned()) {
        const double margin = AppConfig::previewPinnedHitMargin;
        m_resize = new ResizeOverlayView(m_with.screens, m_with.monitors, this);
        m_resize->apply(
            {.band = margin + resizeBandInside,
             .zones = {.cardInset = margin, .handleInset = handleInset, .handleGrab = handleGrab},
             .onBegan = [this](PreviewResizeCorner corner) { call(m_model->onResizeDragBegan, corner); },
             .onChanged = [this](PreviewResizeCorner corner,
                                 Size translation) { call(m_model->onResizeDragChanged, corner, translation); },
             .onEnded = [this] { call(m_model->onResizeDragEnded); }});
    }
}

void PreviewView::addCornerButtons()
{
    m_close =
        new CornerButton({.symbol = Symbol::xmark, .iconSize = facestyle::closeButtonIconSize, .title = tr("Dismiss")},
                         m_with.appearance, m_with.panels, this);
    connect(m_close, &QAbstractButton::clicked, this, [this] { call(m_model->onDismiss); });
    if (!isPinned()) {
        m_pin = new CornerButton(
            {.symbol = Symbol::pinFill, .iconSize = facestyle::pinButtonIconSize, .title = tr("Pin as separate card")},
            m_with.appearance, m_with.panels, this);
        connect(m_pin, &QAbstractButton::clicked, this, [this] { call(m_model->onPinRequested); });
    }
}

void PreviewView::follow()
{
    m_badge->setStatus(m_model->status());
    connect(m_model.get(), &PreviewModel::statusWillChange, m_badge, &StatusBadge::setStatus);
    connect(m_model.get(), &PreviewModel::deckBehindWillChange, this,
            [this](bool next) { arrange({.isBehind = next, .isCollapsed = m_shown.isCollapsed}); });
    connect(m_model.get(), &PreviewModel::collapsedWillChange, this,
            [this](bool next) { arrange({.isBehind = m_shown.isBehind, .isCollapsed = next}); });
    connect(&m_with.appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
    connect(&m_with.appearance, &Appearance::changed, m_frame, qOverload<>(&QWidget::update));
}

void PreviewView::arrange(const Shown &shown)
{
    m_shown = shown;
    const bool isFrontOfAll = !shown.isBehind && !shown.isCollapsed;
    m_actionPanel->setAvailable(!isPinned() && isFrontOfAll);
    if (m_pan != nullptr) {
        m_pan->setVisible(isFrontOfAll);
    }
    if (m_resize != nullptr) {
        m_resize->setVisible(!shown.isBehind);
    }
    m_catcher->setVisible(shown.isBehind);
    m_image->setSharpness(shown.isBehind ? CardPicture::Sharpness::passing : CardPicture::Sharpness::exact);
    m_frame->update();
}

QRect PreviewView::content() const
{
    const auto margin = static_cast<int>(cardHitMargin(m_model->variant()));
    return rect().marginsRemoved({margin, margin, margin, margin});
}

void PreviewView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const QRect content = this->content();
    m_image->setGeometry(content);
    const QRect inside = m_image->rect();
    m_actionPanel->setGeometry(inside);
    m_catcher->setGeometry(inside);
    if (m_pan != nullptr) {
        m_pan->setGeometry(inside);
    }
    m_badge->place();
    m_frame->setGeometry(rect());
    if (m_resize != nullptr) {
        m_resize->setGeometry(rect());
    }
    m_close->setGeometry(isPinned() ? trailingButtonPlace() : leadingButtonPlace());
    if (m_pin != nullptr) {
        m_pin->setGeometry(trailingButtonPlace());
    }
}

QRect PreviewView::leadingButtonPlace() const
{
    constexpr auto side = static_cast<int>(facestyle::cornerButtonSize);
    const auto inset = static_cast<int>(cardHitMargin(m_model->variant()) - facestyle::cornerButtonSafeArea) - side / 2;
    return {inset, inset, side, side};
}

QRect PreviewView::trailingButtonPlace() const
{
    QRect place = leadingButtonPlace();
    place.moveRight(width() - 1 - place.left());
    return place;
}

const QRegion &PreviewView::cardShape() const
{
    // Asked for before the view is told of its size: it is not shown until the shape is known.
    if (m_shapeSize != size()) {
        m_shapeSize = size();
        m_cardShape = opaqueShape(1);
    }
    return m_cardShape;
}

QRegion PreviewView::opaqueShape(double scale) const
{
    constexpr double buttonRadius = facestyle::cornerButtonSize / 2;
    QRegion shape = roundedRegion(content(), facestyle::cardCornerRadius, scale) +
                    roundedRegion(trailingButtonPlace(), buttonRadius, scale);
    if (!isPinned()) {
        shape += roundedRegion(leadingButtonPlace(), buttonRadius, scale);
    }
    return shape;
}

QRegion PreviewView::pointerShape() const
{
    return m_resize != nullptr && !m_resize->isHidden() ? cardShape() + m_resize->hotRegion() : cardShape();
}

void PreviewView::paintEvent(QPaintEvent *event)
{
    const QRect content = this->content();
    if (content.isEmpty() || !m_with.panels.isTranslucencyAvailable()) {
        return;
    }
    // Beneath the picture, but for its round corners, nobody sees the shadow.
    const auto corner = static_cast<int>(facestyle::cardCornerRadius);
    const QRegion covered = QRegion(content.adjusted(corner, 0, -corner, 0)) + content.adjusted(0, corner, 0, -corner);
    const QRegion seen = event->region() - covered;
    if (seen.isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setClipRegion(seen);
    paintShadow(painter, content, cardShadow);
}

bool PreviewView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_image && (event->type() == QEvent::Enter || event->type() == QEvent::Leave)) {
        setHovering(event->type() == QEvent::Enter);
    }
    return QWidget::eventFilter(watched, event);
}

void PreviewView::hideEvent(QHideEvent *event)
{
    // A window that goes away under the pointer is not told that the pointer has left it.
    setHovering(false);
    QWidget::hideEvent(event);
}

void PreviewView::setHovering(bool hovering)
{
    m_isHovering = hovering;
    m_actionPanel->setHovering(hovering);
}

} // namespace lumenfold
