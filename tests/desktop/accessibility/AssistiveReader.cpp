/// A small assistive technology of the tests' own, on libatspi as the real ones are. A process of its own for each
/// question, because the library keeps what it has learnt of one bus for as long as its process lives.
///
///     assistive_reader enable
///         tells the session, as a screen reader does, that there is somebody to whom programs should show themselves
///     assistive_reader list <process id>
///         one line for each object that the process shows: its path (the index of each child on the way), role, name,
///         states and actions, separated by tabs; states and actions by commas. No line while it shows nothing.
///     assistive_reader act <process id> <path> <name> <action>
///         performs an action of the object at that path, which must have that name
///
/// Ends with 0 when it did what it was asked to.
#include <atspi/atspi.h>
#include <gio/gio.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// A program under a sanitizer on a busy machine is slow to answer.
constexpr int answerMilliseconds = 10'000;
constexpr int startupMilliseconds = 10'000;

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Object = std::unique_ptr<AtspiAccessible, Unref>;
using Actions = std::unique_ptr<AtspiAction, Unref>;

std::string take(gchar *text)
{
    const std::unique_ptr<gchar, decltype(&g_free)> owned(text, &g_free);
    return owned ? owned.get() : "";
}

std::string joined(const std::vector<std::string> &words)
{
    std::string line;
    for (const std::string &word : words) {
        line += (line.empty() ? "" : ",") + word;
    }
    return line;
}

std::vector<std::string> statesOf(AtspiAccessible *object)
{
    std::vector<std::string> names;
    const std::unique_ptr<AtspiStateSet, Unref> states(atspi_accessible_get_state_set(object));
    auto *kinds = static_cast<GEnumClass *>(g_type_class_ref(ATSPI_TYPE_STATE_TYPE));
    for (guint index = 0; states && index < kinds->n_values; ++index) {
        if (atspi_state_set_contains(states.get(), static_cast<AtspiStateType>(kinds->values[index].value))) {
            names.emplace_back(kinds->values[index].value_nick);
        }
    }
    g_type_class_unref(kinds);
    return names;
}

std::vector<std::string> actionsOf(AtspiAccessible *object)
{
    std::vector<std::string> names;
    const Actions actions(atspi_accessible_get_action_iface(object));
    const int count = actions ? atspi_action_get_n_actions(actions.get(), nullptr) : 0;
    for (int index = 0; index < count; ++index) {
        names.push_back(take(atspi_action_get_action_name(actions.get(), index, nullptr)));
    }
    return names;
}

/// Null while the process shows nothing of itself.
Object programOf(guint process)
{
    const Object desktop(atspi_get_desktop(0));
    const int count = desktop ? atspi_accessible_get_child_count(desktop.get(), nullptr) : 0;
    for (int index = 0; index < count; ++index) {
        Object program(atspi_accessible_get_child_at_index(desktop.get(), index, nullptr));
        if (program && atspi_accessible_get_process_id(program.get(), nullptr) == process) {
            return program;
        }
    }
    return nullptr;
}

void list(AtspiAccessible *object, const std::string &path)
{
    if (!path.empty()) {
        std::cout << path << '\t' << take(atspi_accessible_get_role_name(object, nullptr)) << '\t'
                  << take(atspi_accessible_get_name(object, nullptr)) << '\t' << joined(statesOf(object)) << '\t'
                  << joined(actionsOf(object)) << '\n';
    }
    const int count = atspi_accessible_get_child_count(object, nullptr);
    for (int index = 0; index < count; ++index) {
        const Object child(atspi_accessible_get_child_at_index(object, index, nullptr));
        if (child) {
            list(child.get(), (path.empty() ? "" : path + '/') + std::to_string(index));
        }
    }
}

Object objectAt(Object object, const std::string &path)
{
    std::istringstream steps(path);
    for (std::string step; object && std::getline(steps, step, '/');) {
        object.reset(atspi_accessible_get_child_at_index(object.get(), std::atoi(step.c_str()), nullptr));
    }
    return object;
}

bool act(AtspiAccessible *object, std::string_view name, std::string_view action)
{
    if (take(atspi_accessible_get_name(object, nullptr)) != name) {
        std::cerr << "another object is there\n";
        return false;
    }
    const std::vector<std::string> names = actionsOf(object);
    const Actions actions(atspi_accessible_get_action_iface(object));
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (names[index] == action) {
            return atspi_action_do_action(actions.get(), static_cast<int>(index), nullptr) != 0;
        }
    }
    std::cerr << "it has no such action\n";
    return false;
}

bool enable()
{
    const std::unique_ptr<GDBusConnection, Unref> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    GError *error = nullptr;
    GVariant *answer = bus == nullptr
                           ? nullptr
                           : g_dbus_connection_call_sync(
                                 bus.get(), "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                                 g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(TRUE)),
                                 nullptr, G_DBUS_CALL_FLAGS_NONE, startupMilliseconds, nullptr, &error);
    if (answer == nullptr) {
        std::cerr << "no accessibility on this bus: " << (error != nullptr ? error->message : "no bus") << '\n';
        return false;
    }
    g_variant_unref(answer);
    return true;
}

bool perform(const std::vector<std::string> &words)
{
    if (words.size() == 1 && words[0] == "enable") {
        return enable();
    }
    if (words.size() < 2 || atspi_init() != 0) {
        return false;
    }
    atspi_set_timeout(answerMilliseconds, startupMilliseconds);
    Object program = programOf(static_cast<guint>(std::strtoul(words[1].c_str(), nullptr, 10)));
    if (words.size() == 2 && words[0] == "list") {
        if (program) {
            list(program.get(), "");
        }
        return true;
    }
    if (words.size() == 5 && words[0] == "act") {
        const Object object = objectAt(std::move(program), words[2]);
        return object && act(object.get(), words[3], words[4]);
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    return perform({argv + 1, argv + argc}) ? EXIT_SUCCESS : EXIT_FAILURE;
}
