#include "cards/face/StackControl.h"

#include "app/theme/Symbol.h"
#include "cards/StackControlState.h"
#include "cards/face/FaceStyle.h"

#include <utility>

namespace lumenfold {
namespace {

constexpr QSize collapsePillSize{44, 24};
constexpr double chevronSize = 10;

/// The capsule is as wide as its text and this on either side; the panel has room for more.
constexpr int clearTextPadding = 14;
constexpr int clearPillHeight = 26;
constexpr int clearTextSize = 11;

QFont clearFont()
{
    return facestyle::font(clearTextSize, QFont::Medium);
}

} // namespace

StackControlButton::StackControlButton(StackControlState &state, const Appearance &appearance,
                                       const PanelFactory &panels)
    : StackPill(appearance, panels), m_state(state)
{
    connect(&m_state, &StackControlState::isCollapsedChanged, this, &StackControlButton::showState);
    connect(this, &QAbstractButton::clicked, this, [this] {
        // The answer may replace the callback.
        const auto callback = m_state.onToggle;
        callback();
    });
    showState();
}

StackControlButton::~StackControlButton() = default;

void StackControlButton::showState()
{
    const QString title = m_state.isCollapsed() ? tr("Expand screenshots") : tr("Collapse screenshots");
    setToolTip(title);
    setAccessibleName(title);
    update();
}

QSize StackControlButton::pillSize() const
{
    return collapsePillSize;
}

void StackControlButton::paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color)
{
    const Symbol symbol = m_state.isCollapsed() ? Symbol::chevronUp : Symbol::chevronDown;
    paintSymbol(painter, symbol, capsule.center(), chevronSize, color);
}

ClearAllButton::ClearAllButton(StackControlState &state, const Appearance &appearance, const PanelFactory &panels)
    : StackPill(appearance, panels), m_state(state)
{
    setText(tr("Clear"));
    setToolTip(tr("Clear stacked screenshots"));
    setAccessibleName(tr("Clear stacked screenshots"));
    connect(this, &QAbstractButton::clicked, &m_state, &StackControlState::pressClear);
}

ClearAllButton::~ClearAllButton() = default;

QSize ClearAllButton::pillSize() const
{
    // Not measured before the pill is wanted: with the first text the toolkit looks for fonts, and the pill is made
    // with the first card.
    const int text = QFontMetrics(clearFont()).horizontalAdvance(this->text());
    // In the middle of a panel of even width, an odd one would stand between the pixels.
    return {text + text % 2 + 2 * clearTextPadding, clearPillHeight};
}

void ClearAllButton::paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color)
{
    facestyle::paintLabel(painter, capsule, text(), clearFont(), color);
}

} // namespace lumenfold
