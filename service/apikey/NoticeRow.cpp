#include "service/apikey/NoticeRow.h"

#include "app/theme/Symbol.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace lumenfold {
namespace {

/// Points.
constexpr int spacing = 6;

} // namespace

/// As high as the first line, however many follow.
class NoticeRow::Triangle : public QWidget {
public:
    explicit Triangle(QWidget *parent) : QWidget(parent) { setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); }

    [[nodiscard]] QSize sizeHint() const override
    {
        const QFontMetrics metrics(font());
        return {metrics.height(), metrics.height()};
    }

    void setColor(const QColor &color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QColor color = m_color.isValid() ? m_color : palette().color(QPalette::WindowText);
        paintSymbol(painter, Symbol::exclamationmarkTriangleFill, QRectF(rect()).center(),
                    QFontMetrics(font()).ascent() * 0.9, color);
    }

private:
    QColor m_color;
};

NoticeRow::NoticeRow(QWidget *parent) : QWidget(parent), m_triangle(new Triangle(this)), m_words(new QLabel(this))
{
    m_words->setTextFormat(Qt::PlainText);
    m_words->setWordWrap(true);
    m_words->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    row->addWidget(m_triangle, 0, Qt::AlignTop);
    row->addWidget(m_words, 1);
    hide();
}

void NoticeRow::setMessage(const QString &message)
{
    if (message == m_words->text()) {
        return;
    }
    m_words->setText(message);
    setAccessibleName(message);
    setVisible(!message.isEmpty());
    if (!message.isEmpty()) {
        QAccessibleEvent alert(m_words, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QString NoticeRow::message() const
{
    return m_words->text();
}

void NoticeRow::setColor(const QColor &color)
{
    m_triangle->setColor(color);
    QPalette colors;
    if (color.isValid()) {
        colors.setColor(QPalette::WindowText, color);
    }
    m_words->setPalette(colors);
}

} // namespace lumenfold
