#include "service/ServiceError.h"

namespace lumenfold {

ServiceError ServiceError::server(int status, const std::optional<QString> &body)
{
    ServiceError error(Case::server, QStringLiteral("Server returned %1: ").arg(status) + body.value_or(QString()));
    error.m_status = status;
    error.m_body = body;
    return error;
}

ServiceError ServiceError::notAuthenticated()
{
    return {Case::notAuthenticated, QStringLiteral("No API key set.")};
}

ServiceError ServiceError::encodingFailed()
{
    return {Case::encodingFailed, QStringLiteral("Could not encode the screenshot.")};
}

ServiceError ServiceError::decoding()
{
    return {Case::decoding, QStringLiteral("Could not parse the server response.")};
}

ServiceError::ServiceError(Case kind, const QString &description)
    : m_kind(kind), m_description(description), m_text(description.toUtf8())
{
}

} // namespace lumenfold
