#pragma once

#include "shortcuts/Shortcut.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace lumenfold {

class NotificationCenter;
class UserDefaults;

/// Where each action keeps its shortcut. Keeps nothing in memory: every read goes to the user defaults. Nothing here
/// fails visibly: what is unreadable in the store reads as the action's default, and stays in the store as it is.
/// Main thread.
class ShortcutStore {
public:
    /// What a shortcut can start, in the order in which the user sees them.
    enum class Action { fullScreen, area, lastArea, undo };

    static constexpr std::array allActions{Action::fullScreen, Action::area, Action::lastArea, Action::undo};

    /// Posted, without a sender, after a shortcut was set or reset.
    static const QString changedNotification;
    /// Posted, without a sender, when a recorder begins or ends to take keys; user info `recordingKey` -> bool.
    static const QString recordingNotification;
    static const QString recordingKey;

    /// The collaborators must outlive this object.
    ShortcutStore(UserDefaults &defaults, NotificationCenter &notifications);

    /// The one store of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static ShortcutStore &shared();
    /// Not owned; null when the store goes away.
    static void setShared(ShortcutStore *store);

    /// The name of the action in the store.
    [[nodiscard]] static QString rawValue(Action action);
    /// Matches exactly; nothing for any other text.
    [[nodiscard]] static std::optional<Action> actionFromRawValue(QStringView rawValue);

    /// The stored shortcut as it is, or the action's default.
    [[nodiscard]] Shortcut shortcut(Action action) const;

    /// Stores and announces. A shortcut that cannot be encoded leaves the stored one in place and is announced all the
    /// same. Two actions may have the same shortcut.
    void set(const Shortcut &shortcut, Action action);

    /// Forgets the stored shortcut, if any, and announces it.
    void reset(Action action);

    /// Announces that a recorder began (true) or ended (false) to take keys.
    void postRecording(bool recording);

private:
    UserDefaults &m_defaults;
    NotificationCenter &m_notifications;
};

} // namespace lumenfold
