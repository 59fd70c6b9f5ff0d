#include "settings/PathLabel.h"

#include <QPainter>

namespace lumenfold {

PathLabel::PathLabel(QWidget *parent) : SecondaryLabel({}, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void PathLabel::setPath(const QString &path)
{
    setText(path);
    setToolTip(path);
}

QSize PathLabel::minimumSizeHint() const
{
    // Points: enough to see that there is something.
    constexpr int leastWidth = 60;
    return {leastWidth, QLabel::minimumSizeHint().height()};
}

void PathLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    // A path is read from the left in every language.
    painter.setLayoutDirection(Qt::LeftToRight);
    const Qt::Alignment side = layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(rect(), static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
}

} // namespace lumenfold
