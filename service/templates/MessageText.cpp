#include "service/templates/MessageText.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

namespace lumenfold {
namespace {

/// Some two pages; nobody reads the rest of what a server had to say.
constexpr qsizetype maximumShownLength = 2000;
constexpr int preferredWidth = 380;
constexpr qsizetype maximumLines = 8;

} // namespace

MessageText::MessageText(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void MessageText::setMessage(const QString &message)
{
    const QString shown = message.size() > maximumShownLength ? message.left(maximumShownLength) + u'…' : message;
    if (shown != text()) {
        setText(shown);
        updateToolTip();
        updateGeometry();
    }
}

QStringList MessageText::linesIn(int width) const
{
    QStringList lines;
    const QStringList paragraphs = text().split(u'\n');
    for (const QString &paragraph : paragraphs) {
        QTextLayout layout(paragraph, font());
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(1, width));
            lines.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
        }
        layout.endLayout();
    }
    return lines;
}

int MessageText::heightForWidth(int width) const
{
    return static_cast<int>(std::min(linesIn(width).size(), maximumLines)) * fontMetrics().lineSpacing();
}

QSize MessageText::sizeHint() const
{
    const int widest = fontMetrics().size(0, text()).width() + 1;
    const int width = std::min(widest, preferredWidth);
    return {width, heightForWidth(width)};
}

QSize MessageText::minimumSizeHint() const
{
    return {1, fontMetrics().lineSpacing()};
}

void MessageText::paintEvent(QPaintEvent *)
{
    const QFontMetrics metrics = fontMetrics();
    QStringList lines = linesIn(width());
    const qsizetype room = std::max(1, height() / metrics.lineSpacing());
    if (lines.size() > room) {
        lines = lines.first(room);
        lines.last() = metrics.elidedText(lines.last() + u'…', Qt::ElideRight, width());
    }
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    int y = (height() - static_cast<int>(lines.size()) * metrics.lineSpacing()) / 2;
    for (const QString &line : std::as_const(lines)) {
        painter.drawText(QRect(0, y, width(), metrics.lineSpacing()), Qt::AlignCenter | Qt::TextSingleLine, line);
        y += metrics.lineSpacing();
    }
}

void MessageText::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    updateToolTip();
}

void MessageText::updateToolTip()
{
    const bool isCutOff = linesIn(width()).size() > height() / fontMetrics().lineSpacing();
    setToolTip(isCutOff ? QStringLiteral("<p>%1</p>").arg(text().toHtmlEscaped()) : QString());
}

} // namespace lumenfold
