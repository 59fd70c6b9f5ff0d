#pragma once

#include "platform/notifications/NotificationCenter.h"
#include "shortcuts/ShortcutRecorder.h"
#include "shortcuts/ShortcutStore.h"

#include <QWidget>

#include <memory>

namespace lumenfold {

class ShortcutRecorderButton;

/// One recorder button for one action. It shows what the store has, also when that changes elsewhere, and stores what
/// is recorded.
class ShortcutRecorderView : public QWidget {
    Q_OBJECT

public:
    /// `label` is what the user calls the action. The references must outlive the view.
    ShortcutRecorderView(ShortcutStore::Action action, const QString &label,
                         const ShortcutRecorder::Collaborators &collaborators, NotificationCenter &notifications,
                         QWidget *parent = nullptr);
    ~ShortcutRecorderView() override;

private:
    void showStored();
    void showName();

    const ShortcutStore::Action m_action;
    ShortcutStore &m_store;
    ShortcutRecorderButton *const m_button;
    const QString m_label;
    const std::unique_ptr<NotificationCenter::Observation> m_observation;
};

} // namespace lumenfold
