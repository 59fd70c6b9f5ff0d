#include "editor/bridge/EditorOrigin.h"

#include <QStringView>

#include <algorithm>

namespace lumenfold {
namespace {

QString hostOf(const QUrl &address)
{
    return address.host(QUrl::FullyEncoded);
}

int defaultPort(QStringView scheme)
{
    constexpr int portOfHttps = 443;
    constexpr int portOfHttp = 80;
    return scheme == u"https" ? portOfHttps : portOfHttp;
}

int effectivePort(const QUrl &address)
{
    return address.port(defaultPort(address.scheme()));
}

bool hasOrigin(const QUrl &address)
{
    return !address.scheme().isEmpty() && !hostOf(address).isEmpty();
}

/// What a host may be made of, so that an origin can stand in a script as it is.
bool isPlain(QChar character)
{
    const char16_t code = character.unicode();
    return code > u' ' && code < 0x7f && code != u'\'' && code != u'"' && code != u'\\' && code != u'<';
}

} // namespace

SecurityOrigin readSecurityOrigin(const QString &serialized)
{
    const QUrl address(serialized, QUrl::StrictMode);
    if (!address.isValid() || !hasOrigin(address)) {
        return {};
    }
    // An origin is no more than that.
    const bool isBare =
        address.path().isEmpty() && !address.hasQuery() && !address.hasFragment() && address.userInfo().isEmpty();
    return isBare ? SecurityOrigin{address.scheme(), hostOf(address), address.port(0)} : SecurityOrigin{};
}

QString editorOrigin(const QUrl &base)
{
    if (!hasOrigin(base)) {
        return {};
    }
    const QString host = hostOf(base);
    QString origin = base.scheme() + QStringLiteral("://") + (host.contains(u':') ? u'[' + host + u']' : host);
    if (base.port() >= 0) {
        origin += u':' + QString::number(base.port());
    }
    return std::all_of(origin.cbegin(), origin.cend(), isPlain) ? origin : QString();
}

bool isTrustedOrigin(const SecurityOrigin &origin, const QUrl &base)
{
    const int port = origin.port == 0 ? defaultPort(origin.protocol) : origin.port;
    return hasOrigin(base) && origin.protocol == base.scheme() && origin.host == hostOf(base) &&
           port == effectivePort(base);
}

bool isTrustedAddress(const QUrl &address, const QUrl &base)
{
    return hasOrigin(base) && hasOrigin(address) && address.scheme() == base.scheme() &&
           hostOf(address) == hostOf(base) && effectivePort(address) == effectivePort(base);
}

} // namespace lumenfold
