#include "cards/face/CornerButton.h"

#include "app/configuration/Palette.h"
#include "cards/face/FaceStyle.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"

#include <QPainter>

#include <cmath>

namespace lumenfold {

CornerButton::CornerButton(const Options &options, const Appearance &appearance, const PanelFactory &panels,
                           QWidget *parent)
    : QAbstractButton(parent)
    , m_symbol(options.symbol)
    , m_iconSize(options.iconSize)
    , m_appearance(appearance)
    , m_panels(panels)
{
    setFixedSize(static_cast<int>(facestyle::cornerButtonSize), static_cast<int>(facestyle::cornerButtonSize));
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(options.title);
    setToolTip(options.title);
    connect(&m_appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
}

CornerButton::~CornerButton() = default;

bool CornerButton::hitButton(const QPoint &position) const
{
    return QRegion(rect(), QRegion::Ellipse).contains(position);
}

void CornerButton::paintEvent(QPaintEvent *)
{
    const ColorScheme scheme = m_appearance.colorScheme();
    const QColor background = palette::previewCornerButtonBg.in(scheme);
    QPainter painter(this);
    if (!m_panels.isTranslucencyAvailable()) {
        // The window itself is cut to the circle; a soft edge inside it would turn black.
        painter.fillRect(rect(), background);
    }
    facestyle::paintRounded(painter, rect(), facestyle::cornerButtonSize / 2,
                            {background, palette::previewCornerButtonBorder.in(scheme)});
    QColor foreground = palette::previewCornerButtonFg.in(scheme);
    if (isDown()) {
        foreground.setAlphaF(static_cast<float>(facestyle::pressedOpacity));
    }
    paintSymbol(painter, m_symbol, QRectF(rect()).center(), m_iconSize, foreground);
}

void paintCornerButtonShadow(QPainter &painter, const QRectF &button)
{
    paintSmallShadow(painter, button, facestyle::controlShadow(facestyle::cornerButtonSize / 2));
}

} // namespace lumenfold
