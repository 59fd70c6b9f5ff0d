#pragma once

#include <gio/gio.h>

#include <memory>

/// GLib's things, owned.
namespace lumenfold::glib {

template <auto release>
struct Release {
    template <typename T>
    void operator()(T *thing) const
    {
        release(thing);
    }
};

template <typename T>
using Object = std::unique_ptr<T, Release<&g_object_unref>>;
using Variant = std::unique_ptr<GVariant, Release<&g_variant_unref>>;
using Table = std::unique_ptr<GHashTable, Release<&g_hash_table_unref>>;
using Strings = std::unique_ptr<gchar *, Release<&g_strfreev>>;
using String = std::unique_ptr<gchar, Release<&g_free>>;
using Context = std::unique_ptr<GMainContext, Release<&g_main_context_unref>>;
using Loop = std::unique_ptr<GMainLoop, Release<&g_main_loop_unref>>;

/// For calls that report an error through their last argument.
class Error {
public:
    Error() = default;
    Error(const Error &) = delete;
    Error &operator=(const Error &) = delete;
    ~Error() { g_clear_error(&m_error); }

    [[nodiscard]] GError **out()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    [[nodiscard]] const GError *get() const { return m_error; }

private:
    GError *m_error = nullptr;
};

} // namespace lumenfold::glib
