#include "app/theme/SecondaryLabel.h"

#include "app/theme/WindowTheme.h"

#include <QEvent>

namespace lumenfold {

SecondaryLabel::SecondaryLabel(const QString &text, QWidget *parent) : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    takeColor();
}

void SecondaryLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
        takeColor();
    }
}

void SecondaryLabel::takeColor()
{
    if (parentWidget() == nullptr) {
        return;
    }
    const QColor color = secondaryText(parentWidget()->palette());
    if (palette().color(QPalette::WindowText) != color) {
        QPalette own;
        own.setColor(QPalette::WindowText, color);
        setPalette(own);
    }
}

} // namespace lumenfold
