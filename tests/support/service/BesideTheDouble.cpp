/// What the program beside the double of the service has in place of what is built into the other. The addresses are
/// the double's, which whoever starts this program names in its environment; the program that people get knows no such
/// variable. The key for the double stands beside the user's own in the keyring.
#include "app/configuration/BuiltInAddresses.h"
#include "service/KeychainHelper.h"

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

const QString KeychainHelper::service = QStringLiteral("org.lumenfold.LumenFold.ServiceDouble");

} // namespace lumenfold
