#include "cards/face/StackPill.h"

#include "app/configuration/Palette.h"
#include "cards/face/FaceStyle.h"
#include "cards/face/RoundedRegion.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"

#include <QPainter>

namespace lumenfold {
namespace {

/// Around the capsule inside its panel.
constexpr int panelPadding = 12;

} // namespace

StackPill::StackPill(const Appearance &appearance, const PanelFactory &panels)
    : m_appearance(appearance), m_panels(panels)
{
    setFocusPolicy(Qt::NoFocus);
    connect(&m_appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
}

StackPill::~StackPill() = default;

QSize StackPill::sizeHint() const
{
    return pillSize() + QSize(2 * panelPadding, 2 * panelPadding);
}

QRectF StackPill::capsule() const
{
    QRectF shape(QPointF(), pillSize());
    shape.moveCenter(QRectF(rect()).center());
    return shape;
}

QRegion StackPill::opaqueShape(double scale) const
{
    const QRectF shape = capsule();
    return roundedRegion(shape, shape.height() / 2, scale);
}

bool StackPill::hitButton(const QPoint &position) const
{
    return capsule().contains(position);
}

void StackPill::paintEvent(QPaintEvent *)
{
    const ColorScheme scheme = m_appearance.colorScheme();
    const QRectF shape = capsule();
    const double radius = shape.height() / 2;
    const QColor background = palette::stackPillBg.in(scheme);
    QPainter painter(this);
    if (m_panels.isTranslucencyAvailable()) {
        paintSmallShadow(painter, shape, facestyle::controlShadow(radius));
    } else {
        // The window itself is cut to the capsule; a soft edge inside it would turn black.
        painter.fillRect(shape, background);
    }
    facestyle::paintRounded(painter, shape, radius, {background, palette::stackPillBorder.in(scheme)});
    QColor color = palette::stackPillFg.in(scheme);
    if (isDown()) {
        color.setAlphaF(static_cast<float>(facestyle::pressedOpacity));
    }
    paintLabel(painter, shape, color);
}

} // namespace lumenfold
