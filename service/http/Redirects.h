#pragma once

#include "service/http/HttpMessage.h"

/// Which redirects are followed, and with what.
namespace lumenfold {

/// Same scheme, host and port, where a port that is not named is the scheme's own.
[[nodiscard]] bool isSameOrigin(const QUrl &one, const QUrl &other);

/// The request that a redirect asks for; nothing when the answer is none, or one that is not followed and so is the
/// final answer itself:
/// - one that leads a request with "Authorization" to another origin. Without the header the other server could only
///   refuse it, and a refusal means that the key is wrong, which it is not;
/// - one from a secure connection to one that is not;
/// - one to anything but a server.
///
/// A request of another method than GET stays what it is, body included, unless the status says otherwise (303, and 301
/// and 302 for POST, as browsers do).
[[nodiscard]] std::optional<HttpRequest> redirected(const HttpRequest &request, const HttpAnswer &answer);

} // namespace lumenfold
