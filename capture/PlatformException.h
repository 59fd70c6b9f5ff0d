#pragma once

#include "platform/PlatformError.h"

#include <QByteArray>

#include <exception>

namespace lumenfold {

/// A platform's failure, passed on as an exception with nothing read into it.
class PlatformException : public std::exception {
public:
    explicit PlatformException(PlatformError error);

    [[nodiscard]] const PlatformError &error() const noexcept { return m_error; }
    /// UTF-8, for the log: domain, code and the platform's own sentence.
    [[nodiscard]] const char *what() const noexcept override { return m_text.constData(); }

private:
    PlatformError m_error;
    QByteArray m_text;
};

/// The error as the log shows it.
[[nodiscard]] QString describe(const PlatformError &error);

} // namespace lumenfold
