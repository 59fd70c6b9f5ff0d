#pragma once

#include "shortcuts/ShortcutRecorder.h"

#include <QPushButton>

namespace lumenfold {

/// The push button over a ShortcutRecorder: a click starts to record, and recording ends when the focus goes. 130 x 24
/// points, wider only where its words are longer.
class ShortcutRecorderButton : public QPushButton {
    Q_OBJECT

public:
    explicit ShortcutRecorderButton(const ShortcutRecorder::Collaborators &collaborators, QWidget *parent = nullptr);
    ~ShortcutRecorderButton() override;

    [[nodiscard]] const ShortcutRecorder &recorder() const { return *m_recorder; }
    void setCurrentDisplay(const QString &display);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void captured(const lumenfold::Shortcut &shortcut);
    /// Recording has ended by a key, and nobody should have the keyboard focus.
    void focusGivenUp();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void start();
    void showTitle();

    ShortcutRecorder *const m_recorder;
};

} // namespace lumenfold
