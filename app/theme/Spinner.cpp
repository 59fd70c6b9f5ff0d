#include "app/theme/Spinner.h"

#include <QPainter>
#include <QTimerEvent>

namespace lumenfold {
namespace {

constexpr double faintestSpoke = 0.18;
constexpr double spokeWidth = 1.6;
/// Of a small wheel beside a button; points.
constexpr int smallSide = 16;

} // namespace

void spinner::paint(QPainter &painter, const QRectF &area, int darkest, QColor color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(area.center());
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (darkest - spoke + spokes) % spokes;
        color.setAlphaF(static_cast<float>(1 - (1 - faintestSpoke) * age / (spokes - 1)));
        painter.setPen(QPen(color, spokeWidth, Qt::SolidLine, Qt::RoundCap));
        const double outer = area.width() / 2 - spokeWidth / 2;
        painter.drawLine(QPointF(0, -outer * 0.5), QPointF(0, -outer));
        painter.rotate(360.0 / spokes);
    }
    painter.restore();
}

Spinner::Spinner(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Spinner::setSpinning(bool spins)
{
    m_spins = spins;
    spinWhileSeen();
    update();
}

QSize Spinner::sizeHint() const
{
    return {smallSide, smallSide};
}

void Spinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_spoke = (m_spoke + 1) % spinner::spokes;
    update();
}

void Spinner::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    spinWhileSeen();
}

void Spinner::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    spinWhileSeen();
}

void Spinner::paintEvent(QPaintEvent *)
{
    if (m_spins) {
        QPainter painter(this);
        spinner::paint(painter, QRectF(rect()), m_spoke, palette().color(QPalette::WindowText));
    }
}

void Spinner::spinWhileSeen()
{
    if (m_spins && isVisible()) {
        if (!m_timer.isActive()) {
            m_timer.start(spinner::spokeMilliseconds, this);
        }
    } else {
        m_timer.stop();
    }
}

} // namespace lumenfold
