#include "cards/face/ImagePreviewView.h"

#include "app/configuration/Palette.h"
#include "cards/CardShadow.h"
#include "cards/face/AccessiblePart.h"
#include "cards/face/CornerButton.h"
#include "cards/face/FaceStyle.h"
#include "cards/face/RoundedRegion.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace lumenfold {
namespace {

constexpr double cornerRadius = 12;
constexpr CardShadow shadow{.cornerRadius = cornerRadius, .blurRadius = 30, .opacity = 0.45, .offset = {0, 16}};

} // namespace

ImagePreviewView::ImagePreviewView(const Options &options, const Appearance &appearance, const PanelFactory &panels)
    : m_hitMargin(static_cast<int>(options.hitMargin))
    , m_appearance(appearance)
    , m_panels(panels)
    , m_picture(options.image)
    , m_close(new CornerButton(
          {.symbol = Symbol::xmark, .iconSize = facestyle::closeButtonIconSize, .title = tr("Close preview")},
          appearance, panels, this))
{
    [[maybe_unused]] static const bool isPresented =
        presentToAssistiveTechnologies<ImagePreviewView, QAccessible::Graphic>();
    setAccessibleName(tr("Screenshot preview"));
    connect(m_close, &QAbstractButton::clicked, this, [close = options.onClose] {
        if (close) {
            close();
        }
    });
    connect(&m_picture, &FullPicture::changed, this, qOverload<>(&QWidget::update));
    connect(&m_appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
}

ImagePreviewView::~ImagePreviewView() = default;

QRect ImagePreviewView::content() const
{
    return rect().marginsRemoved({m_hitMargin, m_hitMargin, m_hitMargin, m_hitMargin});
}

QRegion ImagePreviewView::opaqueShape(double scale) const
{
    return roundedRegion(content(), cornerRadius, scale) +
           roundedRegion(closeButtonPlace(), facestyle::cornerButtonSize / 2, scale);
}

QRect ImagePreviewView::closeButtonPlace() const
{
    constexpr auto side = static_cast<int>(facestyle::cornerButtonSize);
    const int inset = m_hitMargin - static_cast<int>(facestyle::cornerButtonSafeArea) - side / 2;
    return {width() - inset - side, inset, side, side};
}

void ImagePreviewView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_close->setGeometry(closeButtonPlace());
    if (const QRect content = this->content(); !content.isEmpty()) {
        m_picture.prepare(content.size() * devicePixelRatio());
    }
}

void ImagePreviewView::paintEvent(QPaintEvent *)
{
    const QRectF content(this->content());
    if (content.isEmpty()) {
        return;
    }
    const ColorScheme scheme = m_appearance.colorScheme();
    const bool isBlended = m_panels.isTranslucencyAvailable();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (isBlended) {
        paintShadow(painter, content, shadow);
        paintCornerButtonShadow(painter, m_close->geometry());
    }
    // Where windows do not blend, the window itself is cut to the rounded shape, and a soft edge inside it would turn
    // black.
    const double radius = isBlended ? cornerRadius : 0;
    QPainterPath outline;
    outline.addRoundedRect(content, radius, radius);
    if (const QImage &picture = m_picture.picture(); picture.isNull()) {
        painter.fillPath(outline, palette::previewScrim.in(scheme));
    } else {
        painter.save();
        painter.setClipPath(outline, Qt::IntersectClip);
        painter.drawImage(content, picture);
        painter.restore();
    }
    facestyle::paintRounded(painter, content, cornerRadius, {Qt::NoBrush, palette::previewStroke.in(scheme)});
}

} // namespace lumenfold
