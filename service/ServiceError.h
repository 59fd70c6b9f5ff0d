#pragma once

#include <QString>

#include <exception>
#include <optional>

namespace lumenfold {

/// Why the online service did not do what it was asked. The description is the text for the user.
class ServiceError : public std::exception {
public:
    enum class Case {
        /// An answer that is not a success; `status()` and `body()` say which.
        server,
        /// There is no API key, or the service does not accept it any more.
        notAuthenticated,
        /// The screenshot has no PNG.
        encodingFailed,
        /// The answer is not what was expected.
        decoding,
    };

    /// `status` is -1 for an answer that is none of HTTP; no `body` for one that is no text.
    [[nodiscard]] static ServiceError server(int status, const std::optional<QString> &body);
    [[nodiscard]] static ServiceError notAuthenticated();
    [[nodiscard]] static ServiceError encodingFailed();
    [[nodiscard]] static ServiceError decoding();

    [[nodiscard]] Case kind() const noexcept { return m_kind; }
    /// Set for `server` only.
    [[nodiscard]] int status() const noexcept { return m_status; }
    [[nodiscard]] const std::optional<QString> &body() const noexcept { return m_body; }

    [[nodiscard]] const QString &description() const noexcept { return m_description; }
    /// The description in UTF-8.
    [[nodiscard]] const char *what() const noexcept override { return m_text.constData(); }

private:
    ServiceError(Case kind, const QString &description);

    Case m_kind;
    int m_status = 0;
    std::optional<QString> m_body;
    QString m_description;
    QByteArray m_text;
};

} // namespace lumenfold
