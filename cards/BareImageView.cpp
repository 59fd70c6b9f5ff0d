#include "cards/BareImageView.h"

#include "cards/CardShadow.h"
#include "cards/CardSizing.h"
#include "cards/PreviewModel.h"
#include "platform/panels/Panel.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <utility>

namespace lumenfold {
namespace {

constexpr double cornerRadius = 14;
constexpr double borderWidth = 1;
constexpr CardShadow shadow{.cornerRadius = cornerRadius, .blurRadius = 18, .opacity = 0.4, .offset = {0, 10}};

/// A line that keeps the card's edge visible on a background of the picture's own colour.
QColor borderColor(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    return isDark ? QColor(255, 255, 255, 41) : QColor(0, 0, 0, 41);
}

QString accessibleNameOf(const PreviewModel &model)
{
    const QString kind = model.variant() == PreviewCardVariant::pinned ? BareImageView::tr("Pinned screenshot")
                                                                       : BareImageView::tr("Screenshot");
    const auto pixels = model.image().pixelSize();
    return pixels ? BareImageView::tr("%1, %2 × %3 pixels").arg(kind).arg(pixels->width).arg(pixels->height) : kind;
}

} // namespace

BareImageView::BareImageView(std::shared_ptr<PreviewModel> model, const PanelFactory &panels)
    : m_model(std::move(model)), m_panels(panels), m_picture(m_model->image())
{
    setAccessibleName(accessibleNameOf(*m_model));
    connect(&m_picture, &CardPicture::changed, this, qOverload<>(&QWidget::update));
    // A card that comes out of a deck may want a sharper picture.
    connect(m_model.get(), &PreviewModel::deckBehindWillChange, this, qOverload<>(&QWidget::update));
}

BareImageView::~BareImageView() = default;

QRegion BareImageView::opaqueShape() const
{
    QPainterPath outline;
    outline.addRoundedRect(cardRect(), cornerRadius, cornerRadius);
    return QRegion(outline.toFillPolygon().toPolygon());
}

void BareImageView::paintEvent(QPaintEvent *)
{
    const QRectF card = cardRect();
    if (card.isEmpty()) {
        return;
    }
    QPainter painter(this);
    const bool isBlended = m_panels.isTranslucencyAvailable();
    if (isBlended) {
        paintShadow(painter, card, shadow);
    }
    // Where windows do not blend, the window itself is cut to the rounded shape, and a soft edge inside it would turn
    // black.
    m_picture.paint(painter, card, isBlended ? cornerRadius : 0,
                    m_model->deckBehind() ? CardPicture::Sharpness::passing : CardPicture::Sharpness::exact);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(borderColor(palette()), borderWidth));
    const double inset = borderWidth / 2;
    painter.drawRoundedRect(card.adjusted(inset, inset, -inset, -inset), cornerRadius - inset, cornerRadius - inset);
}

void BareImageView::mousePressEvent(QMouseEvent *event)
{
    // Taken, so that the release comes here as well.
    event->setAccepted(event->button() == Qt::LeftButton && cardRect().contains(event->position()));
}

void BareImageView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && cardRect().contains(event->position()) && m_model->deckBehind() &&
        m_model->onBringToFront) {
        m_model->onBringToFront();
    }
}

QRectF BareImageView::cardRect() const
{
    const double margin = cardHitMargin(m_model->variant());
    return QRectF(rect()).adjusted(margin, margin, -margin, -margin);
}

BareImageViews::BareImageViews(const PanelFactory &panels) : m_panels(panels) {}

std::unique_ptr<QWidget> BareImageViews::makeCardView(std::shared_ptr<PreviewModel> model)
{
    return std::make_unique<BareImageView>(std::move(model), m_panels);
}

} // namespace lumenfold
