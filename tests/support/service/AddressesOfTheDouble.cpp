/// In place of the addresses that are built into the program: those of the double of the service, which whoever starts
/// this program names in its environment. The program that people get knows no such variables.
#include "app/configuration/BuiltInAddresses.h"

#include <QtGlobal>

namespace lumenfold {
namespace {

QUrl baseURL()
{
    const QUrl url(qEnvironmentVariable("LUMENFOLD_SERVICE_DOUBLE"), QUrl::StrictMode);
    if (!url.isValid() || url.isRelative()) {
        qFatal("LumenFold: LUMENFOLD_SERVICE_DOUBLE is not the address of a double of the service");
    }
    return url;
}

} // namespace

QUrl builtInApiBaseURL()
{
    static const QUrl url = baseURL();
    return url;
}

QUrl builtInWebBaseURL()
{
    return builtInApiBaseURL();
}

} // namespace lumenfold
