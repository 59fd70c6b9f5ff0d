#include "cards/face/ActionPanel.h"

#include "app/configuration/Palette.h"
#include "cards/face/ActionButton.h"
#include "cards/face/FaceStyle.h"
#include "platform/appearance/Appearance.h"
#include "platform/panels/Panel.h"

#include <QEasingCurve>
#include <QPainter>

namespace lumenfold {
namespace {

constexpr int fadeMilliseconds = 150;
constexpr int horizontalPadding = 12;
/// Between the rows, and between the buttons of a row.
constexpr int spacing = 4;

/// Fast at first, slow at the end: the control points that "ease out" has everywhere.
QEasingCurve easeOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return curve;
}

} // namespace

ActionPanel::ActionPanel(const Actions &actions, const Appearance &appearance, const PanelFactory &panels,
                         QWidget *parent)
    : QWidget(parent)
    , m_appearance(appearance)
    , m_panels(panels)
    , m_edit(new ActionButton(ActionButton::Kind::primary, tr("Edit Screenshot"), appearance, *this))
    , m_save(new ActionButton(ActionButton::Kind::secondary, tr("Save"), appearance, *this))
    , m_copy(new ActionButton(ActionButton::Kind::secondary, tr("Copy"), appearance, *this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_fade.setDuration(fadeMilliseconds);
    m_fade.setEasingCurve(easeOut());
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { setOpacity(value.toDouble()); });
    connect(&m_appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
    connect(m_edit, &QAbstractButton::clicked, this, actions.onEdit);
    connect(m_save, &QAbstractButton::clicked, this, actions.onSave);
    connect(m_copy, &QAbstractButton::clicked, this, actions.onCopy);
    setOpacity(0);
}

ActionPanel::~ActionPanel() = default;

void ActionPanel::setAvailable(bool available)
{
    setVisible(available);
}

bool ActionPanel::isShown() const
{
    return m_isHovering && !isHidden();
}

QList<QAbstractButton *> ActionPanel::buttons() const
{
    return isHidden() ? QList<QAbstractButton *>() : QList<QAbstractButton *>{m_edit, m_save, m_copy};
}

void ActionPanel::setHovering(bool hovering)
{
    if (hovering == m_isHovering) {
        return;
    }
    m_isHovering = hovering;
    // What cannot be seen cannot be pressed.
    setAttribute(Qt::WA_TransparentForMouseEvents, !hovering);
    m_fade.stop();
    if (!isVisible()) {
        setOpacity(hovering ? 1 : 0);
        return;
    }
    setOpacity(m_opacity);
    m_fade.setStartValue(m_opacity);
    m_fade.setEndValue(hovering ? 1.0 : 0.0);
    m_fade.start();
}

void ActionPanel::setOpacity(double opacity)
{
    m_opacity = opacity;
    // What is not seen does not say that it shows; what is about to be can be pressed already.
    for (QWidget *button : {m_edit, m_save, m_copy}) {
        button->setVisible(m_isHovering || opacity > 0);
    }
    update();
}

void ActionPanel::paintEvent(QPaintEvent *)
{
    if (m_opacity <= 0) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::previewScrim.in(m_appearance.colorScheme()));
    const double radius = m_panels.isTranslucencyAvailable() ? facestyle::cardCornerRadius : 0;
    painter.drawRoundedRect(rect(), radius, radius);
    m_edit->paintShadow(painter);
}

void ActionPanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const int primary = ActionButton::heightOf(ActionButton::Kind::primary);
    const int secondary = ActionButton::heightOf(ActionButton::Kind::secondary);
    const int width = this->width() - 2 * horizontalPadding;
    const int top = (height() - primary - spacing - secondary) / 2;
    const int row = top + primary + spacing;
    const int half = (width - spacing) / 2;
    m_edit->setGeometry(horizontalPadding, top, width, primary);
    m_save->setGeometry(horizontalPadding, row, half, secondary);
    m_copy->setGeometry(horizontalPadding + half + spacing, row, width - half - spacing, secondary);
}

} // namespace lumenfold
