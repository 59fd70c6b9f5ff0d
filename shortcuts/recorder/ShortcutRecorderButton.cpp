#include "shortcuts/recorder/ShortcutRecorderButton.h"

#include "platform/keyboard/ToolkitKeyEvent.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace lumenfold {
namespace {

/// Points.
constexpr QSize usualSize{130, 24};
/// On either side of the words.
constexpr int padding = 8;
constexpr int verticalPadding = 3;

} // namespace

ShortcutRecorderButton::ShortcutRecorderButton(const ShortcutRecorder::Collaborators &collaborators, QWidget *parent)
    : QPushButton(parent), m_recorder(new ShortcutRecorder(collaborators))
{
    m_recorder->setParent(this);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QPushButton::clicked, this, &ShortcutRecorderButton::start);
    connect(m_recorder, &ShortcutRecorder::titleChanged, this, &ShortcutRecorderButton::showTitle);
    connect(m_recorder, &ShortcutRecorder::captured, this, &ShortcutRecorderButton::captured);
    connect(m_recorder, &ShortcutRecorder::focusGivenUp, this, &ShortcutRecorderButton::focusGivenUp);
}

ShortcutRecorderButton::~ShortcutRecorderButton() = default;

void ShortcutRecorderButton::setCurrentDisplay(const QString &display)
{
    m_recorder->setCurrentDisplay(display);
}

QSize ShortcutRecorderButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    int words = metrics.horizontalAdvance(text());
    // The button does not grow under the pointer.
    const QStringList longTitles = ShortcutRecorder::longTitles();
    for (const QString &title : longTitles) {
        words = std::max(words, metrics.horizontalAdvance(title));
    }
    return usualSize.expandedTo({words + 2 * padding, metrics.height() + 2 * verticalPadding});
}

QSize ShortcutRecorderButton::minimumSizeHint() const
{
    return sizeHint();
}

bool ShortcutRecorderButton::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && m_recorder->isRecording()) {
        // It is no shortcut of the window's now.
        event->accept();
        return true;
    }
    return QPushButton::event(event);
}

void ShortcutRecorderButton::keyPressEvent(QKeyEvent *event)
{
    if (!m_recorder->isRecording()) {
        QPushButton::keyPressEvent(event);
        return;
    }
    event->accept();
    if (const std::optional<KeyEvent> press = keyEventOf(*event)) {
        m_recorder->keyDown(*press);
    }
}

void ShortcutRecorderButton::focusOutEvent(QFocusEvent *event)
{
    QPushButton::focusOutEvent(event);
    m_recorder->focusLost();
}

void ShortcutRecorderButton::hideEvent(QHideEvent *event)
{
    QPushButton::hideEvent(event);
    m_recorder->focusLost();
}

void ShortcutRecorderButton::paintEvent(QPaintEvent *event)
{
    QPushButton::paintEvent(event);
    if (m_recorder->isRecording()) {
        constexpr double lineWidth = 2;
        constexpr double radius = 4;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), lineWidth));
        constexpr double inset = lineWidth / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    }
}

void ShortcutRecorderButton::start()
{
    m_recorder->startRecording();
    setFocus(Qt::OtherFocusReason);
}

void ShortcutRecorderButton::showTitle()
{
    setText(m_recorder->title());
    updateGeometry();
    update();
}

} // namespace lumenfold
