#include "app/configuration/BuiltInAddresses.h"

#include <QString>

#if !defined(LUMENFOLD_API_BASE_URL) || !defined(LUMENFOLD_WEB_BASE_URL)
#error "The build sets the two base addresses for this file"
#endif

namespace lumenfold {
namespace {

QUrl fixedURL(const char *text)
{
    QUrl url(QString::fromUtf8(text), QUrl::StrictMode);
    if (!url.isValid()) {
        qFatal("LumenFold: this build's base address is not an address: %s", text);
    }
    return url;
}

} // namespace

QUrl builtInApiBaseURL()
{
    static const QUrl url = fixedURL(LUMENFOLD_API_BASE_URL);
    return url;
}

QUrl builtInWebBaseURL()
{
    static const QUrl url = fixedURL(LUMENFOLD_WEB_BASE_URL);
    return url;
}

} // namespace lumenfold
