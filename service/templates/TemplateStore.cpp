#include "service/templates/TemplateStore.h"

#include "platform/defaults/UserDefaults.h"
#include "platform/notifications/NotificationCenter.h"

namespace lumenfold {
namespace {

TemplateStore *sharedStore = nullptr;

} // namespace

const QString TemplateStore::idKey = QStringLiteral("LumenFold.selectedTemplateId");
const QString TemplateStore::nameKey = QStringLiteral("LumenFold.selectedTemplateName");
const QString TemplateStore::selectionChangedNotification = QStringLiteral("LumenFold.templateSelectionChanged");

TemplateStore::TemplateStore(UserDefaults &defaults, NotificationCenter &notifications)
    : m_defaults(defaults), m_notifications(notifications)
{
}

TemplateStore &TemplateStore::shared()
{
    Q_ASSERT_X(sharedStore, "TemplateStore::shared", "called before the composition root made the store");
    return *sharedStore;
}

void TemplateStore::setShared(TemplateStore *store)
{
    sharedStore = store;
}

std::optional<QString> TemplateStore::selectedId() const
{
    return m_defaults.string(idKey);
}

bool TemplateStore::hasSelection() const
{
    return selectedId().has_value();
}

void TemplateStore::select(const LumenfoldTemplate &picked)
{
    m_defaults.setString(idKey, picked.id);
    m_defaults.setString(nameKey, picked.name);
    m_notifications.post(selectionChangedNotification);
}

void TemplateStore::clear()
{
    m_defaults.remove(idKey);
    m_defaults.remove(nameKey);
    m_notifications.post(selectionChangedNotification);
}

} // namespace lumenfold
