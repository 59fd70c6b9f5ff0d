#include "platform/x11/QtWindows.h"

#include <QGuiApplication>

namespace lumenfold::x11 {

xcb_connection_t *qtConnection()
{
    if (qGuiApp == nullptr) {
        return nullptr;
    }
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

std::optional<ResourceRange> qtResources()
{
    xcb_connection_t *connection = qtConnection();
    if (connection == nullptr) {
        return std::nullopt;
    }
    const xcb_setup_t *setup = xcb_get_setup(connection);
    return ResourceRange{setup->resource_id_base, setup->resource_id_mask};
}

} // namespace lumenfold::x11
