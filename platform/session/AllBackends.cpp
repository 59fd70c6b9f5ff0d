#include "platform/session/X11Backend.h"

namespace lumenfold {

Backends allBackends()
{
    Backends backends;
    backends.push_back(std::make_unique<X11Backend>());
    return backends;
}

} // namespace lumenfold
