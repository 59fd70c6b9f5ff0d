#include "app/updates/UpdateHeader.h"

#include "app/theme/ProgramIcon.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

constexpr int iconSide = 56;
constexpr int wordSpacing = 6;
constexpr double headingSize = 1.25;

QLabel *plainLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

UpdateHeader::UpdateHeader(const QString &heading, const QString &text, QWidget *parent)
    : QWidget(parent), m_words(new QVBoxLayout)
{
    auto *icon = new QLabel(this);
    icon->setPixmap(programIcon().pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
    icon->setFixedSize(iconSide, iconSide);

    auto *large = plainLabel(heading, this);
    QFont font = large->font();
    font.setPointSizeF(font.pointSizeF() * headingSize);
    font.setBold(true);
    large->setFont(font);
    // In the middle of the icon's height, if they are lower than it.
    m_words->setSpacing(wordSpacing);
    m_words->addStretch();
    m_words->addWidget(large);
    if (!text.isEmpty()) {
        m_words->addWidget(plainLabel(text, this));
    }
    m_words->addStretch();

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(updateWindow::spacing);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(m_words, 1);
    setAccessibleName(text.isEmpty() ? heading : heading + u' ' + text);
}

void UpdateHeader::append(QWidget *widget)
{
    m_words->insertWidget(m_words->count() - 1, widget, 0, Qt::AlignLeading);
}

void UpdateHeader::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace lumenfold
