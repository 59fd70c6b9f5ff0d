#include "platform/session/SessionEnvironment.h"

#include <QtGlobal>

namespace lumenfold {

SessionEnvironment SessionEnvironment::ofThisProcess()
{
    return {.x11Display = qgetenv("DISPLAY"), .forcedBackend = qEnvironmentVariable("LUMENFOLD_BACKEND")};
}

} // namespace lumenfold
