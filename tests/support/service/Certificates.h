#pragma once

#include "tests/support/service/ServiceDouble.h"

#include <QTemporaryDir>

namespace lumenfold::test {

/// A certificate authority for this run alone. Uses the `openssl` program.
class CertificateAuthority {
public:
    /// Throws std::runtime_error when it cannot be made.
    CertificateAuthority();

    /// Its own certificate, in PEM: what a client has to trust.
    [[nodiscard]] QByteArray certificate() const;
    /// A server's, for the host of that name ("127.0.0.1" is one).
    [[nodiscard]] ServerIdentity identityFor(const QString &host);

private:
    QTemporaryDir m_folder;
    int m_identities = 0;
};

} // namespace lumenfold::test
