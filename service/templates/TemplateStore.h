#pragma once

#include "service/LumenfoldTemplate.h"
#include "service/TemplateSelection.h"

namespace lumenfold {

class NotificationCenter;
class UserDefaults;

/// The template that screenshots are opened with, as the user picked it. Keeps nothing in memory: every read goes to
/// the user defaults. It survives restarts and signing out, and a template that the service no longer has. Main thread.
class TemplateStore : public TemplateSelection {
public:
    static const QString idKey;
    static const QString nameKey;
    /// Posted, without a sender, after a template was selected or the selection was cleared.
    static const QString selectionChangedNotification;

    /// The collaborators must outlive this object.
    TemplateStore(UserDefaults &defaults, NotificationCenter &notifications);

    /// The one store of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static TemplateStore &shared();
    /// Not owned; null when the store goes away.
    static void setShared(TemplateStore *store);

    [[nodiscard]] std::optional<QString> selectedId() const override;
    [[nodiscard]] bool hasSelection() const;

    /// Stores the id, and the name as it is now, and announces it.
    void select(const LumenfoldTemplate &picked);

    /// Forgets both and announces it, also when nothing was stored.
    void clear();

private:
    UserDefaults &m_defaults;
    NotificationCenter &m_notifications;
};

} // namespace lumenfold
