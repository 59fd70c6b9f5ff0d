#pragma once

#include "shortcuts/ShortcutRecorder.h"
#include "shortcuts/ShortcutStore.h"

#include <QWidget>

class QToolButton;

namespace lumenfold {

class NotificationCenter;

/// One action, its recorder, and the way back to the shortcut that the program comes with.
class ShortcutRow : public QWidget {
    Q_OBJECT

public:
    /// The references must outlive the row.
    ShortcutRow(ShortcutStore::Action action, const QString &label,
                const ShortcutRecorder::Collaborators &collaborators, NotificationCenter &notifications,
                QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void drawSymbol();

    QToolButton *m_reset = nullptr;
};

} // namespace lumenfold
