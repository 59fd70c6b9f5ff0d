#pragma once

#include "platform/permissions/Permissions.h"

namespace lumenfold {

/// An X server shows every client the whole screen, so there is nothing to ask for.
class X11Permissions : public Permissions {
public:
    bool preflightScreenCaptureAccess() override { return true; }
    bool requestScreenCaptureAccess() override { return true; }
};

} // namespace lumenfold
