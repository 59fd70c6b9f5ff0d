#pragma once

#include "platform/PlatformError.h"

#include <QByteArray>

#include <exception>
#include <optional>

namespace lumenfold {

/// Why there is no picture. The only error type of `ScreenCaptureService` itself; it carries no text for the user.
class ScreenCaptureError : public std::exception {
public:
    enum class Case {
        /// The capture framework failed; `underlyingError()` says how.
        captureFailed,
        /// There is no screen, or the capture framework lists no display.
        noDisplays,
        /// The program may not look at the screen.
        permissionDenied,
    };

    [[nodiscard]] static ScreenCaptureError captureFailed(PlatformError error);
    [[nodiscard]] static ScreenCaptureError noDisplays();
    [[nodiscard]] static ScreenCaptureError permissionDenied();

    [[nodiscard]] Case kind() const noexcept { return m_kind; }
    /// Present for `captureFailed` only.
    [[nodiscard]] const std::optional<PlatformError> &underlyingError() const noexcept { return m_underlyingError; }
    /// UTF-8, for the log.
    [[nodiscard]] const char *what() const noexcept override { return m_text.constData(); }

private:
    ScreenCaptureError(Case kind, std::optional<PlatformError> underlyingError, QByteArray text);

    Case m_kind;
    std::optional<PlatformError> m_underlyingError;
    QByteArray m_text;
};

} // namespace lumenfold
