#include "settings/SettingsSection.h"

#include "app/theme/SecondaryLabel.h"
#include "app/theme/WindowTheme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

// Points.
constexpr int rowSpacing = 6;
constexpr int dividerPadding = 4;

/// Of the size of other texts.
constexpr double captionShare = 0.9;

} // namespace

QFont headlineFont(const QFont &text)
{
    QFont bold = text;
    bold.setBold(true);
    return bold;
}

SettingsSection::SettingsSection(const QString &title, QWidget *parent) : QWidget(parent), m_rows(new QVBoxLayout(this))
{
    setAccessibleName(title);
    m_rows->setContentsMargins({});
    m_rows->setSpacing(rowSpacing);
    auto *headline = new QLabel(title, this);
    headline->setTextFormat(Qt::PlainText);
    headline->setWordWrap(true);
    headline->setFont(headlineFont(font()));
    m_rows->addWidget(headline);
}

void SettingsSection::addRow(QWidget *row)
{
    m_rows->addWidget(row);
}

void SettingsSection::addCaption(const QString &text, const QString &toolTip)
{
    auto *caption = new SecondaryLabel(text, this);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * captionShare);
    caption->setFont(small);
    caption->setWordWrap(true);
    caption->setToolTip(toolTip);
    m_rows->addWidget(caption);
}

SettingsDivider::SettingsDivider(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SettingsDivider::sizeHint() const
{
    return {1, 2 * dividerPadding + 1};
}

void SettingsDivider::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(0, dividerPadding, width(), 1, separatorColor(palette()));
}

} // namespace lumenfold
