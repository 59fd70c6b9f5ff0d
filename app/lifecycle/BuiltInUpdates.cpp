#include "app/lifecycle/BuiltInUpdates.h"

#include "platform/updates/FeedSignature.h"

#include <QString>

#if !defined(LUMENFOLD_UPDATE_FEED_URL) || !defined(LUMENFOLD_UPDATE_PUBLIC_KEY)
#error "The build sets the feed's address and key for this file"
#endif

namespace lumenfold {

QUrl builtInUpdateFeed()
{
    return QUrl(QStringLiteral(LUMENFOLD_UPDATE_FEED_URL), QUrl::StrictMode);
}

QByteArray builtInUpdateKey()
{
    return readPublicKey(LUMENFOLD_UPDATE_PUBLIC_KEY).value_or(QByteArray());
}

} // namespace lumenfold
