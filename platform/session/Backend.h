#pragma once

#include "platform/session/PlatformServices.h"
#include "platform/session/SessionEnvironment.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <memory>
#include <vector>

namespace lumenfold {

/// One way to stand on a desktop. A backend says itself whether it applies to a session; nobody else asks what kind of
/// session this is. Errors are sentences for the user's terminal.
class Backend {
public:
    Backend() = default;
    Backend(const Backend &) = delete;
    Backend &operator=(const Backend &) = delete;
    virtual ~Backend() = default;

    /// By which $LUMENFOLD_BACKEND can ask for it.
    [[nodiscard]] virtual QString name() const = 0;

    [[nodiscard]] virtual bool applies(const SessionEnvironment &session) const = 0;

    /// Whether the session can be reached. Called before the toolkit starts, which ends the process if it cannot.
    [[nodiscard]] virtual tl::expected<void, QString> check(const SessionEnvironment &session) const = 0;

    /// The toolkit's own plug-in for this kind of session.
    [[nodiscard]] virtual QByteArray toolkitPlatform() const = 0;

    /// Called once, when the toolkit's application object is there.
    [[nodiscard]] virtual tl::expected<std::unique_ptr<PlatformServices>, QString> connect() const = 0;
};

using Backends = std::vector<std::unique_ptr<Backend>>;

/// The first that applies, or the forced one; never null.
[[nodiscard]] tl::expected<const Backend *, QString> chooseBackend(const Backends &backends,
                                                                   const SessionEnvironment &session);

/// Every backend that this program was built with, the most fitting first.
[[nodiscard]] Backends allBackends();

} // namespace lumenfold
