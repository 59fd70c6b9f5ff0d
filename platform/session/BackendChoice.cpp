#include "platform/session/Backend.h"

#include <QStringList>

namespace lumenfold {

tl::expected<const Backend *, QString> chooseBackend(const Backends &backends, const SessionEnvironment &session)
{
    QStringList names;
    for (const std::unique_ptr<Backend> &backend : backends) {
        const bool isChosen =
            session.forcedBackend.isEmpty() ? backend->applies(session) : backend->name() == session.forcedBackend;
        if (isChosen) {
            return backend.get();
        }
        names.append(backend->name());
    }
    if (!session.forcedBackend.isEmpty()) {
        return tl::unexpected(QStringLiteral("there is no backend %1, only %2")
                                  .arg(session.forcedBackend, names.join(QStringLiteral(", "))));
    }
    return tl::unexpected(QStringLiteral("there is no desktop session to run in (DISPLAY is not set)"));
}

} // namespace lumenfold
