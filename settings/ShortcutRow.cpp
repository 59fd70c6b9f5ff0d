#include "settings/ShortcutRow.h"

#include "app/theme/Symbol.h"
#include "app/theme/WindowTheme.h"
#include "shortcuts/recorder/ShortcutRecorderView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace lumenfold {
namespace {

// Points.
constexpr int symbolSide = 14;
constexpr int resetSide = 24;
constexpr int controlSpacing = 8;

} // namespace

ShortcutRow::ShortcutRow(ShortcutStore::Action action, const QString &label,
                         const ShortcutRecorder::Collaborators &collaborators, NotificationCenter &notifications,
                         QWidget *parent)
    : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(controlSpacing);
    auto *name = new QLabel(label, this);
    name->setTextFormat(Qt::PlainText);
    name->setWordWrap(true);
    row->addWidget(name, 1);
    row->addWidget(new ShortcutRecorderView(action, label, collaborators, notifications, this));
    // After the recorder, so that the keyboard reaches it after the recorder.
    m_reset = new QToolButton(this);
    row->addWidget(m_reset);

    const QString help = tr("Reset to default");
    m_reset->setAutoRaise(true);
    m_reset->setFocusPolicy(Qt::StrongFocus);
    m_reset->setFixedSize(resetSide, resetSide);
    m_reset->setIconSize({symbolSide, symbolSide});
    m_reset->setToolTip(help);
    m_reset->setAccessibleName(help);
    m_reset->setAccessibleDescription(label);
    connect(m_reset, &QToolButton::clicked, this, [&store = collaborators.store, action] { store.reset(action); });
    drawSymbol();
}

void ShortcutRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_reset != nullptr) {
        drawSymbol();
    }
}

void ShortcutRow::drawSymbol()
{
    m_reset->setIcon(symbolIcon(Symbol::arrowUturnBackward, symbolSide, secondaryText(palette())));
}

} // namespace lumenfold
