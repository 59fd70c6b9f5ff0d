#pragma once

#include "platform/keyboard/KeyEventTap.h"
#include "shortcuts/Shortcut.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace lumenfold {

class Alerts;
class ShortcutStore;
class Workspace;

/// What the button does with which the user gives an action another shortcut; how the button looks is its view's
/// business. While it records it holds the keyboard, so that combinations are recorded that the desktop or this program
/// would otherwise take for itself. Main thread.
class ShortcutRecorder : public QObject {
    Q_OBJECT

public:
    /// Everything must outlive the recorder.
    struct Collaborators {
        KeyEventTapService &taps;
        ShortcutStore &store;
        Alerts &alerts;
        Workspace &workspace;
    };

    explicit ShortcutRecorder(const Collaborators &collaborators);
    ~ShortcutRecorder() override;

    /// What the button may say besides shortcuts.
    [[nodiscard]] static QStringList longTitles();

    /// What the button says.
    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] bool isRecording() const { return m_isRecording; }

    [[nodiscard]] const QString &currentDisplay() const { return m_currentDisplay; }
    /// The text of the present shortcut. It is the title unless a shortcut is being recorded.
    void setCurrentDisplay(const QString &display);

    /// A click. Where the keyboard cannot be had, recording is announced all the same after the alert has come up, and
    /// hotkeys stay suspended until a later recording ends.
    void startRecording();
    /// The button has lost the keyboard focus: recording ends and nothing is stored.
    void focusLost();
    /// A key press that reached the button itself; true when it was taken.
    bool keyDown(const KeyEvent &press);

Q_SIGNALS:
    void titleChanged();
    /// A combination was recorded; recording has ended.
    void captured(const lumenfold::Shortcut &shortcut);
    /// The button should give the keyboard focus away.
    void focusGivenUp();

private:
    [[nodiscard]] TapDisposition tapped(const KeyEvent &event);
    void capture(const KeyEvent &press);
    void stopRecording();
    void setTitle(const QString &title);
    QCoro::Task<> askForPermission();

    const Collaborators m_with;
    QString m_title;
    QString m_currentDisplay;
    bool m_isRecording = false;
    bool m_isShowingAlert = false;
    /// Shared with its handler, in which it may be closed.
    std::shared_ptr<KeyEventTap> m_tap;
};

} // namespace lumenfold
