#pragma once

#include "platform/permissions/Permissions.h"

#include <QString>

#include <functional>

namespace lumenfold::test {

/// Says what the test says, and counts how often it was asked.
class FakePermissions : public Permissions {
public:
    bool preflightScreenCaptureAccess() override;
    bool requestScreenCaptureAccess() override;

    bool isGranted = true;
    int preflights = 0;
    int requests = 0;
    /// Told of each call as it happens ("preflight", "request"), for tests of the order among several fakes.
    std::function<void(const QString &)> onCall;
};

} // namespace lumenfold::test
