#include "capture/ScreenCaptureError.h"

#include "capture/PlatformException.h"

#include <utility>

namespace lumenfold {

ScreenCaptureError ScreenCaptureError::captureFailed(PlatformError error)
{
    QByteArray text = QByteArrayLiteral("captureFailed: ") + describe(error).toUtf8();
    return {Case::captureFailed, std::move(error), std::move(text)};
}

ScreenCaptureError ScreenCaptureError::noDisplays()
{
    return {Case::noDisplays, std::nullopt, QByteArrayLiteral("noDisplays")};
}

ScreenCaptureError ScreenCaptureError::permissionDenied()
{
    return {Case::permissionDenied, std::nullopt, QByteArrayLiteral("permissionDenied")};
}

ScreenCaptureError::ScreenCaptureError(Case kind, std::optional<PlatformError> underlyingError, QByteArray text)
    : m_kind(kind), m_underlyingError(std::move(underlyingError)), m_text(std::move(text))
{
}

} // namespace lumenfold
