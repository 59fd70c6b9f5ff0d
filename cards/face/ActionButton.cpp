#include "cards/face/ActionButton.h"

#include "app/configuration/Palette.h"
#include "cards/face/ActionPanel.h"
#include "cards/face/FaceStyle.h"
#include "platform/appearance/Appearance.h"

#include <QLinearGradient>
#include <QPainter>

namespace lumenfold {
namespace {

constexpr int primaryHeight = 32;
constexpr int primaryTextSize = 12;
constexpr double primaryCornerRadius = 12;
constexpr QColor primaryText{255, 255, 255};
constexpr QColor primaryBorder{255, 255, 255, palette::alpha(0.28)};
constexpr CardShadow primaryShadow{
    .cornerRadius = primaryCornerRadius, .blurRadius = 4, .opacity = 0.2, .offset = {0, 2}};

constexpr int secondaryHeight = 28;
constexpr int secondaryTextSize = 11;
constexpr double secondaryCornerRadius = 10;

/// Between the label and the button's edges.
constexpr double labelPadding = 4;

} // namespace

int ActionButton::heightOf(Kind kind)
{
    return kind == Kind::primary ? primaryHeight : secondaryHeight;
}

ActionButton::ActionButton(Kind kind, const QString &title, const Appearance &appearance, ActionPanel &panel)
    : QAbstractButton(&panel), m_kind(kind), m_appearance(appearance), m_panel(panel)
{
    setFocusPolicy(Qt::NoFocus);
    setText(title);
    setAccessibleName(title);
    setToolTip(title);
}

ActionButton::~ActionButton() = default;

void ActionButton::paintShadow(QPainter &painter) const
{
    if (m_kind == Kind::primary) {
        paintSmallShadow(painter, geometry(), primaryShadow);
    }
}

void ActionButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(m_panel.opacity());
    const QRectF area(rect());
    const QRectF label = area.adjusted(labelPadding, 0, -labelPadding, 0);
    if (m_kind == Kind::primary) {
        QLinearGradient gradient(area.topLeft(), area.bottomLeft());
        gradient.setColorAt(0, palette::previewActionTop);
        gradient.setColorAt(1, palette::previewActionBottom);
        facestyle::paintRounded(painter, area, primaryCornerRadius, {gradient, primaryBorder});
    } else {
        const ColorScheme scheme = m_appearance.colorScheme();
        facestyle::paintRounded(painter, area, secondaryCornerRadius,
                                {palette::stackPillBg.in(scheme), palette::stackPillBorder.in(scheme)});
    }
    if (isDown()) {
        painter.setOpacity(m_panel.opacity() * facestyle::pressedOpacity);
    }
    if (m_kind == Kind::primary) {
        facestyle::paintLabel(painter, label, text(), facestyle::font(primaryTextSize, QFont::DemiBold), primaryText);
    } else {
        facestyle::paintLabel(painter, label, text(), facestyle::font(secondaryTextSize, QFont::DemiBold),
                              palette::stackPillFg.in(m_appearance.colorScheme()));
    }
}

} // namespace lumenfold
