/// In place of ProgramUpdater.cpp in a build that leaves updates to the distribution.
#include "app/lifecycle/ProgramUpdater.h"

#include "platform/updates/StandardUpdaterController.h"

namespace lumenfold {

std::unique_ptr<StandardUpdaterController> makeProgramUpdater(const UpdaterCollaborators &, UpdaterDelegate &)
{
    return nullptr;
}

} // namespace lumenfold
