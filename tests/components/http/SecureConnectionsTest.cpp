#include "tests/components/http/HttpClientFixture.h"
#include "tests/support/service/Certificates.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace lumenfold::test {
namespace {

using ::testing::SizeIs;

class SecureConnections : public HttpClientTest {
protected:
    static void SetUpTestSuite() { s_authority = new CertificateAuthority; }
    static void TearDownTestSuite() { delete s_authority; }

    void trustTheAuthority()
    {
        client = std::make_unique<HttpClient>(HttpClient::Options{.additionalAuthorities = s_authority->certificate()});
    }

    /// The double over HTTPS, for the host of that name.
    [[nodiscard]] static std::unique_ptr<ServiceDouble> secureDouble(const QString &host = QStringLiteral("127.0.0.1"))
    {
        return std::make_unique<ServiceDouble>(ServiceDouble::Options{.identity = s_authority->identityFor(host)});
    }

    static inline CertificateAuthority *s_authority = nullptr;
};

TEST_F(SecureConnections, WorkWithACertificateThatIsTrusted)
{
    trustTheAuthority();
    const auto secure = secureDouble();
    const QByteArray picture = QByteArray("picture ").repeated(700'000);
    secure->behave(Endpoint::storage, answering(200));
    HttpRequest upload = put(picture);
    upload.address = secure->url(QStringLiteral("/storage/a.png"));
    const Ended ended = send(upload);
    ASSERT_TRUE(ended.answer) << ended.error->what();
    ASSERT_THAT(secure->requests(), SizeIs(1));
    EXPECT_TRUE(secure->requests()[0].body == picture);
}

TEST_F(SecureConnections, NothingIsSentToAServerWithAnUnknownCertificate)
{
    const auto secure = secureDouble();
    HttpRequest request{.address = secure->url(QStringLiteral("/v1/user")),
                        .headers = {{"Authorization", "ApiKey secret"}}};
    EXPECT_EQ(failureOf(request), Kind::untrusted);
    EXPECT_EQ(secure->begun(Endpoint::user), 0);
}

TEST_F(SecureConnections, NothingIsSentToAServerThatIsAnother)
{
    trustTheAuthority();
    const auto secure = secureDouble(QStringLiteral("other.example"));
    EXPECT_EQ(failureOf({.address = secure->url(QStringLiteral("/v1/user"))}), Kind::untrusted);
    EXPECT_EQ(secure->begun(Endpoint::user), 0);
}

TEST_F(SecureConnections, AServerThatSpeaksPlainlyIsNoneForThem)
{
    QTcpServer plain;
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
        plain.nextPendingConnection()->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
    });
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    HttpRequest request{.address = QUrl(QStringLiteral("https://127.0.0.1/v1/user"))};
    request.address.setPort(plain.serverPort());
    EXPECT_EQ(failureOf(request), Kind::untrusted);
}

TEST_F(SecureConnections, AreNotLeftByARedirect)
{
    trustTheAuthority();
    const auto secure = secureDouble();
    secure->behave(Endpoint::storage, redirectingTo(service.url(QStringLiteral("/storage/a.png")).toEncoded(), 307));
    HttpRequest upload = put("picture");
    upload.address = secure->url(QStringLiteral("/storage/a.png"));
    EXPECT_EQ(send(upload).answer.value().status, 307);
    EXPECT_THAT(service.requests(), SizeIs(0));
}

TEST_F(SecureConnections, NoBodyIsSentTwice)
{
    trustTheAuthority();
    const auto secure = secureDouble();
    secure->behave(Endpoint::storage, {.way = Way::cut});
    HttpRequest upload = put("picture");
    upload.address = secure->url(QStringLiteral("/storage/a.png"));
    EXPECT_EQ(failureOf(upload), Kind::cutOff);
    EXPECT_EQ(secure->begun(Endpoint::storage), 1);
}

} // namespace
} // namespace lumenfold::test
