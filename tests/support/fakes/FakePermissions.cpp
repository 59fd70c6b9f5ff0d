#include "tests/support/fakes/FakePermissions.h"

namespace lumenfold::test {

bool FakePermissions::preflightScreenCaptureAccess()
{
    ++preflights;
    if (onCall) {
        onCall(QStringLiteral("preflight"));
    }
    return isGranted;
}

bool FakePermissions::requestScreenCaptureAccess()
{
    ++requests;
    if (onCall) {
        onCall(QStringLiteral("request"));
    }
    return isGranted;
}

} // namespace lumenfold::test
