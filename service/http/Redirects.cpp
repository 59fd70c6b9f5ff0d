#include "service/http/Redirects.h"

#include <algorithm>

namespace lumenfold {
namespace {

constexpr QStringView secureScheme = u"https";
constexpr QStringView plainScheme = u"http";

int portOf(const QUrl &address)
{
    constexpr int securePort = 443;
    constexpr int plainPort = 80;
    return address.port(address.scheme() == secureScheme ? securePort : plainPort);
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool becomesGet(HttpMethod method, int status)
{
    return status == 303 || (method == HttpMethod::post && (status == 301 || status == 302));
}

bool isFollowed(const HttpRequest &request, const QUrl &target)
{
    if (!target.isValid() || target.host().isEmpty()) {
        return false;
    }
    const bool secure = target.scheme() == secureScheme;
    if (!secure && (target.scheme() != plainScheme || request.address.scheme() == secureScheme)) {
        return false;
    }
    return !headerNamed("Authorization", request.headers) || isSameOrigin(request.address, target);
}

} // namespace

bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

std::optional<HttpRequest> redirected(const HttpRequest &request, const HttpAnswer &answer)
{
    if (!isRedirect(answer.status)) {
        return std::nullopt;
    }
    const std::optional<QByteArray> location = headerNamed("Location", answer.headers);
    if (!location) {
        return std::nullopt;
    }
    const QUrl target = request.address.resolved(QUrl::fromEncoded(*location));
    if (!isFollowed(request, target)) {
        return std::nullopt;
    }
    HttpRequest next = request;
    next.address = target;
    if (becomesGet(request.method, answer.status)) {
        next.method = HttpMethod::get;
        next.body.clear();
        std::erase_if(next.headers, [](const HttpHeader &header) {
            return header.name.compare("Content-Type", Qt::CaseInsensitive) == 0;
        });
    }
    return next;
}

} // namespace lumenfold
