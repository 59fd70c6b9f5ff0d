#include "capture/PlatformException.h"

#include <utility>

namespace lumenfold {

PlatformException::PlatformException(PlatformError error)
    : m_error(std::move(error)), m_text(describe(m_error).toUtf8())
{
}

QString describe(const PlatformError &error)
{
    return QStringLiteral("%2 (%1, code %3)").arg(error.domain, error.description, QString::number(error.code));
}

} // namespace lumenfold
