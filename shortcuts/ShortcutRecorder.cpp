#include "shortcuts/ShortcutRecorder.h"

#include "platform/alerts/Alerts.h"
#include "platform/workspace/Workspace.h"
#include "shortcuts/RecordedKey.h"
#include "shortcuts/ShortcutStore.h"

#include <QPointer>
#include <QUrl>

namespace lumenfold {
namespace {

QString recordingTitle()
{
    return ShortcutRecorder::tr("Type shortcut…");
}

QString refusedTitle()
{
    return ShortcutRecorder::tr("Permission needed");
}

} // namespace

ShortcutRecorder::ShortcutRecorder(const Collaborators &collaborators) : m_with(collaborators) {}

ShortcutRecorder::~ShortcutRecorder() = default;

QStringList ShortcutRecorder::longTitles()
{
    return {recordingTitle(), refusedTitle()};
}

void ShortcutRecorder::setTitle(const QString &title)
{
    if (title != m_title) {
        m_title = title;
        Q_EMIT titleChanged();
    }
}

void ShortcutRecorder::setCurrentDisplay(const QString &display)
{
    m_currentDisplay = display;
    if (!m_isRecording) {
        setTitle(display);
    }
}

void ShortcutRecorder::startRecording()
{
    m_isRecording = true;
    setTitle(recordingTitle());
    m_tap.reset();
    m_tap = m_with.taps.createTap(TapScope::wholeKeyboard, [this](const KeyEvent &event) { return tapped(event); });
    if (m_tap) {
        m_tap->enable();
    } else if (!m_isShowingAlert) {
        m_isShowingAlert = true;
        stopRecording();
        setTitle(refusedTitle());
        askForPermission();
    }
    m_with.store.postRecording(true);
}

void ShortcutRecorder::focusLost()
{
    if (m_isRecording) {
        stopRecording();
    }
}

bool ShortcutRecorder::keyDown(const KeyEvent &press)
{
    if (!m_isRecording) {
        return false;
    }
    capture(press);
    return true;
}

TapDisposition ShortcutRecorder::tapped(const KeyEvent &event)
{
    const std::shared_ptr<KeyEventTap> tap = m_tap;
    switch (event.type) {
    case KeyEventType::tapDisabledByTimeout:
    case KeyEventType::tapDisabledByUserInput:
        if (tap) {
            tap->enable();
        }
        return TapDisposition::passOn;
    case KeyEventType::keyDown:
        return keyDown(event) ? TapDisposition::swallow : TapDisposition::passOn;
    case KeyEventType::keyUp:
        break;
    }
    return TapDisposition::passOn;
}

void ShortcutRecorder::capture(const KeyEvent &press)
{
    const RecordedKey key = RecordedKey::of(press);
    switch (key.meaning) {
    case RecordedKey::Meaning::cancel:
        stopRecording();
        Q_EMIT focusGivenUp();
        return;
    case RecordedKey::Meaning::refuse:
        m_with.workspace.beep();
        return;
    case RecordedKey::Meaning::record:
        setCurrentDisplay(key.shortcut->display);
        stopRecording();
        Q_EMIT focusGivenUp();
        Q_EMIT captured(*key.shortcut);
        return;
    }
}

void ShortcutRecorder::stopRecording()
{
    m_isRecording = false;
    setTitle(m_currentDisplay);
    m_tap.reset();
    m_with.store.postRecording(false);
}

QCoro::Task<> ShortcutRecorder::askForPermission()
{
    const QPointer<ShortcutRecorder> self(this);
    Alert alert;
    alert.messageText = tr("Allow LumenFold to record shortcuts");
    alert.informativeText = tr("LumenFold needs Accessibility permission only while recording shortcuts to override "
                               "macOS shortcuts.");
    alert.buttons = {tr("Open System Settings"), tr("Not Now")};
    const int chosen = co_await m_with.alerts.runModal(alert);
    if (!self) {
        co_return;
    }
    m_isShowingAlert = false;
    if (chosen == alertFirstButtonReturn) {
        m_with.workspace.open(
            QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility")));
    }
}

} // namespace lumenfold
