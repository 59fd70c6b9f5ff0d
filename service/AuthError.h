#pragma once

#include <QString>

#include <exception>

namespace lumenfold {

/// Why nobody was signed in. The description is the text for the user.
class AuthError : public std::exception {
public:
    enum class Case {
        /// The service could not be asked, or gave no usable answer.
        network,
        /// The service does not know the key.
        invalidKey,
    };

    [[nodiscard]] static AuthError network(const QString &message);
    [[nodiscard]] static AuthError invalidKey();

    [[nodiscard]] Case kind() const noexcept { return m_kind; }
    [[nodiscard]] const QString &description() const noexcept { return m_description; }
    /// The description in UTF-8.
    [[nodiscard]] const char *what() const noexcept override { return m_text.constData(); }

private:
    AuthError(Case kind, const QString &description);

    Case m_kind;
    QString m_description;
    QByteArray m_text;
};

} // namespace lumenfold
