#include "tests/support/service/Certificates.h"

#include "tests/support/desktop/Process.h"

#include <QFile>
#include <QHostAddress>

#include <stdexcept>

namespace lumenfold::test {
namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A new key of an elliptic curve, which takes no time, and a certificate for it.
void makeCertificate(const QTemporaryDir &folder, const QString &name, const QStringList &options)
{
    Process openssl(
        {.program = QStringLiteral("openssl"),
         .arguments =
             QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-nodes"),
                         QStringLiteral("-newkey"), QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                         QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-days"), QStringLiteral("2"),
                         QStringLiteral("-keyout"), folder.filePath(name + QStringLiteral(".key")),
                         QStringLiteral("-out"), folder.filePath(name + QStringLiteral(".pem"))} +
             options,
         .logFile = folder.filePath(name + QStringLiteral(".log"))});
    if (openssl.waitForExit() != Process::Exit{}) {
        throw std::runtime_error("openssl makes no certificate: " + openssl.log().toStdString());
    }
}

} // namespace

CertificateAuthority::CertificateAuthority()
{
    makeCertificate(m_folder, QStringLiteral("authority"),
                    {QStringLiteral("-subj"), QStringLiteral("/CN=Authority of a test")});
}

QByteArray CertificateAuthority::certificate() const
{
    return contents(m_folder.filePath(QStringLiteral("authority.pem")));
}

ServerIdentity CertificateAuthority::identityFor(const QString &host)
{
    const QString name = QStringLiteral("server%1").arg(++m_identities);
    const QString kind = QHostAddress(host).isNull() ? QStringLiteral("DNS") : QStringLiteral("IP");
    makeCertificate(m_folder, name,
                    {QStringLiteral("-subj"), QStringLiteral("/CN=Server of a test"), QStringLiteral("-addext"),
                     QStringLiteral("subjectAltName=%1:%2").arg(kind, host), QStringLiteral("-addext"),
                     QStringLiteral("basicConstraints=critical,CA:FALSE"), QStringLiteral("-CA"),
                     m_folder.filePath(QStringLiteral("authority.pem")), QStringLiteral("-CAkey"),
                     m_folder.filePath(QStringLiteral("authority.key"))});
    return {.certificate = contents(m_folder.filePath(name + QStringLiteral(".pem"))),
            .key = contents(m_folder.filePath(name + QStringLiteral(".key")))};
}

} // namespace lumenfold::test
