#pragma once

#include "platform/session/Backend.h"

namespace lumenfold {

/// An X server: that of an X11 session, or the one inside a Wayland session (XWayland).
class X11Backend : public Backend {
public:
    [[nodiscard]] QString name() const override;
    [[nodiscard]] bool applies(const SessionEnvironment &session) const override;
    [[nodiscard]] tl::expected<void, QString> check(const SessionEnvironment &session) const override;
    [[nodiscard]] QByteArray toolkitPlatform() const override;
    [[nodiscard]] tl::expected<std::unique_ptr<PlatformServices>, QString> connect() const override;
};

} // namespace lumenfold
