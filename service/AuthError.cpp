#include "service/AuthError.h"

namespace lumenfold {

AuthError AuthError::network(const QString &message)
{
    return {Case::network, message};
}

AuthError AuthError::invalidKey()
{
    return {Case::invalidKey, QStringLiteral("That API key isn't valid. Double-check it and try again.")};
}

AuthError::AuthError(Case kind, const QString &description)
    : m_kind(kind), m_description(description), m_text(description.toUtf8())
{
}

} // namespace lumenfold
