#include "shortcuts/recorder/ShortcutRecorderView.h"

#include "shortcuts/ShortcutWords.h"
#include "shortcuts/recorder/ShortcutRecorderButton.h"

#include <QHBoxLayout>

namespace lumenfold {

ShortcutRecorderView::ShortcutRecorderView(ShortcutStore::Action action, const QString &label,
                                           const ShortcutRecorder::Collaborators &collaborators,
                                           NotificationCenter &notifications, QWidget *parent)
    : QWidget(parent)
    , m_action(action)
    , m_store(collaborators.store)
    , m_button(new ShortcutRecorderButton(collaborators, this))
    , m_label(label)
    , m_observation(
          notifications.observe(ShortcutStore::changedNotification, [this](const Notification &) { showStored(); }))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_button);
    connect(m_button, &ShortcutRecorderButton::captured, this,
            [this](const Shortcut &shortcut) { m_store.set(shortcut, m_action); });
    // The focus stands before the button, where it is not seen: whoever uses the keyboard goes on from here.
    connect(m_button, &ShortcutRecorderButton::focusGivenUp, this, [this] { setFocus(Qt::OtherFocusReason); });
    connect(&m_button->recorder(), &ShortcutRecorder::titleChanged, this, &ShortcutRecorderView::showName);
    showStored();
}

ShortcutRecorderView::~ShortcutRecorderView() = default;

void ShortcutRecorderView::showStored()
{
    const Shortcut shortcut = m_store.shortcut(m_action);
    m_button->setCurrentDisplay(shortcut.display);
    m_button->setToolTip(shortcutInWords(shortcut));
    showName();
}

void ShortcutRecorderView::showName()
{
    const ShortcutRecorder &recorder = m_button->recorder();
    const bool showsShortcut = recorder.title() == recorder.currentDisplay();
    //: What a screen reader says of a button: the action, and its shortcut
    m_button->setAccessibleName(
        tr("%1: %2").arg(m_label, showsShortcut ? shortcutInWords(m_store.shortcut(m_action)) : recorder.title()));
}

} // namespace lumenfold
