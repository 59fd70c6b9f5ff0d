#include "shortcuts/ShortcutStore.h"

#include "platform/defaults/UserDefaults.h"
#include "platform/keyboard/KeyEvent.h"
#include "platform/notifications/NotificationCenter.h"

#include <QVariantMap>

#include <cstddef>

namespace lumenfold {
namespace {

struct ActionRow {
    QStringView rawValue;
    std::uint32_t keyCode;
    std::uint32_t carbonModifiers;
    QStringView display;
};

/// Indexed by the action.
constexpr std::array actionRows{
    ActionRow{u"fullScreen", 18, carbon::optionKey | carbon::cmdKey, u"⌥⌘1"},
    ActionRow{u"area", 19, carbon::optionKey | carbon::cmdKey, u"⌥⌘2"},
    ActionRow{u"lastArea", 20, carbon::optionKey | carbon::cmdKey, u"⌥⌘3"},
    ActionRow{u"undo", 6, carbon::cmdKey, u"⌘Z"},
};
static_assert(actionRows.size() == ShortcutStore::allActions.size());

const ActionRow &row(ShortcutStore::Action action)
{
    return actionRows.at(static_cast<std::size_t>(action));
}

Shortcut fallback(ShortcutStore::Action action)
{
    const ActionRow &defaults = row(action);
    return {defaults.keyCode, defaults.carbonModifiers, defaults.display.toString()};
}

QString key(ShortcutStore::Action action)
{
    return QStringLiteral("LumenFold.shortcut.") + ShortcutStore::rawValue(action);
}

ShortcutStore *sharedStore = nullptr;

} // namespace

const QString ShortcutStore::changedNotification = QStringLiteral("LumenFold.shortcutsChanged");
const QString ShortcutStore::recordingNotification = QStringLiteral("LumenFold.shortcutRecording");
const QString ShortcutStore::recordingKey = QStringLiteral("recording");

ShortcutStore::ShortcutStore(UserDefaults &defaults, NotificationCenter &notifications)
    : m_defaults(defaults), m_notifications(notifications)
{
}

ShortcutStore &ShortcutStore::shared()
{
    Q_ASSERT_X(sharedStore, "ShortcutStore::shared", "called before the composition root made the store");
    return *sharedStore;
}

void ShortcutStore::setShared(ShortcutStore *store)
{
    sharedStore = store;
}

QString ShortcutStore::rawValue(Action action)
{
    return row(action).rawValue.toString();
}

std::optional<ShortcutStore::Action> ShortcutStore::actionFromRawValue(QStringView rawValue)
{
    for (const Action action : allActions) {
        if (row(action).rawValue == rawValue) {
            return action;
        }
    }
    return std::nullopt;
}

Shortcut ShortcutStore::shortcut(Action action) const
{
    if (const auto stored = m_defaults.data(key(action))) {
        if (auto decoded = decodeShortcut(*stored)) {
            return *std::move(decoded);
        }
    }
    return fallback(action);
}

void ShortcutStore::set(const Shortcut &shortcut, Action action)
{
    if (const auto encoded = encodeShortcut(shortcut)) {
        m_defaults.setData(key(action), *encoded);
    }
    m_notifications.post(changedNotification);
}

void ShortcutStore::reset(Action action)
{
    m_defaults.remove(key(action));
    m_notifications.post(changedNotification);
}

void ShortcutStore::postRecording(bool recording)
{
    m_notifications.post(recordingNotification, nullptr, QVariantMap{{recordingKey, recording}});
}

} // namespace lumenfold
