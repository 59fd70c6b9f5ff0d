#include "tests/components/service/ServiceFixture.h"
#include "tests/support/service/Certificates.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace lumenfold::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

using UploadTest = ServiceTest;

/// What the service answers when it is asked for an address.
Behaviour addressIs(const QByteArray &address)
{
    return answering(200, R"({"url":")" + address + R"("})");
}

TEST_F(UploadTest, ThePictureComesToTheStorage)
{
    const Image image = picture();
    const auto ending = save(image);
    ASSERT_TRUE(ending.result) << qPrintable(ending.text());

    ASSERT_THAT(online.requests(), SizeIs(2));
    const ReceivedRequest asked = online.requests()[0];
    EXPECT_EQ(asked.method, "POST");
    EXPECT_EQ(asked.target, "/v1/user/upload/signed-url");
    EXPECT_EQ(asked.header("Authorization"), "ApiKey demo-key");
    EXPECT_EQ(asked.header("Content-Type"), "application/json");

    const ReceivedRequest stored = online.requests()[1];
    EXPECT_EQ(stored.method, "PUT");
    EXPECT_EQ(stored.header("Content-Type"), "image/png");
    EXPECT_EQ(stored.header("Authorization"), std::nullopt);
    EXPECT_EQ(stored.body, image.pngData());
    EXPECT_EQ(online.stored(ending.result->path().toUtf8()), image.pngData());
}

TEST_F(UploadTest, TheServiceIsToldOfAFileWithANewName)
{
    static const QRegularExpression upperCaseUuid(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.png$"));
    QStringList names;
    for (int upload = 0; upload < 2; ++upload) {
        ASSERT_TRUE(save().result);
        const QJsonObject body = QJsonDocument::fromJson(online.requests(Endpoint::signedUrl).last().body).object();
        names.append(body.value(QStringLiteral("fileName")).toString());
        EXPECT_TRUE(upperCaseUuid.match(names.last()).hasMatch()) << qPrintable(names.last());
        EXPECT_EQ(body.value(QStringLiteral("contentType")).toString(), QStringLiteral("image/png"));
        EXPECT_EQ(body.value(QStringLiteral("type")).toString(), QStringLiteral("image"));
        EXPECT_EQ(body.size(), 3);
    }
    EXPECT_NE(names[0], names[1]);
}

TEST_F(UploadTest, TheAddressOfTheFileHasNoSignature)
{
    online.behave(Endpoint::storage, answering(201));
    const QByteArray path = online.url(QStringLiteral("/storage/a%20b%2Fc.png")).toEncoded();
    online.behave(Endpoint::signedUrl, addressIs(path + "?X-Signature=ab%2Bcd%3D&X-Expires=600"));
    EXPECT_EQ(save().result.value().toEncoded(), path);
    EXPECT_EQ(online.requests(Endpoint::storage)[0].target,
              "/storage/a%20b%2Fc.png?X-Signature=ab%2Bcd%3D&X-Expires=600");
}

TEST_F(UploadTest, WithoutAKeyNothingIsSent)
{
    removeKey();
    const auto ending = save();
    ASSERT_TRUE(ending.serviceError);
    EXPECT_EQ(ending.serviceError->kind(), Kind::notAuthenticated);
    EXPECT_EQ(ending.text(), QStringLiteral("No API key set."));
    EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::notAuthenticated);
    EXPECT_THAT(online.requests(), IsEmpty());
}

TEST_F(UploadTest, APictureThatHasNoPngIsNotSent)
{
    const auto ending = save(Image::withoutRepresentation({10, 10}));
    ASSERT_TRUE(ending.serviceError);
    EXPECT_EQ(ending.serviceError->kind(), Kind::encodingFailed);
    EXPECT_THAT(online.requests(), IsEmpty());
}

TEST_F(UploadTest, EveryUploadReadsTheAddressesAndTheKeyAnew)
{
    ASSERT_TRUE(save().result);
    ServiceDouble other;
    other.change([](ServiceProtocol &protocol) { protocol.apiKey = "another-key"; });
    defaults.setString(AppConfig::apiBaseOverrideKey, other.baseURL().toString());
    putKey("another-key");
    ASSERT_TRUE(save().result);
    EXPECT_THAT(other.requests(), SizeIs(2));
    EXPECT_THAT(online.requests(), SizeIs(2));
}

TEST_F(UploadTest, WhatTheServiceRefusesIsSaidWithItsWords)
{
    online.behave(Endpoint::signedUrl, answering(500, "oops"));
    auto ending = save();
    ASSERT_TRUE(ending.serviceError);
    EXPECT_EQ(ending.serviceError->status(), 500);
    EXPECT_EQ(ending.text(), QStringLiteral("Server returned 500: oops"));

    online.behave(Endpoint::signedUrl, answering(503));
    EXPECT_EQ(save().text(), QStringLiteral("Server returned 503: "));

    online.behave(Endpoint::signedUrl, answering(400, "\xff\xfe"));
    ending = save();
    EXPECT_EQ(ending.serviceError.value().body(), std::nullopt);
    EXPECT_EQ(ending.text(), QStringLiteral("Server returned 400: "));
    EXPECT_THAT(online.requests(Endpoint::storage), IsEmpty());
    EXPECT_TRUE(auth.isSignedIn());
}

TEST_F(UploadTest, APageInPlaceOfAnErrorIsCutShort)
{
    online.behave(Endpoint::signedUrl, answering(502, QByteArray(1'000'000, 'x')));
    const auto ending = save();
    ASSERT_TRUE(ending.serviceError);
    EXPECT_LT(ending.text().size(), 3000);
}

TEST_F(UploadTest, ARefusedKeySignsOut)
{
    for (const int status : {401, 403}) {
        putKey("demo-key");
        ASSERT_TRUE(auth.isSignedIn());
        online.behave(Endpoint::signedUrl, answering(status, "who are you?"));
        const auto ending = save();
        ASSERT_TRUE(ending.serviceError) << status;
        EXPECT_EQ(ending.serviceError->kind(), Kind::notAuthenticated);
        EXPECT_FALSE(auth.isSignedIn());
    }
    EXPECT_THAT(online.requests(Endpoint::storage), IsEmpty());
}

TEST_F(UploadTest, AStorageThatRefusesLeavesTheUserSignedIn)
{
    for (const int status : {401, 403, 500}) {
        online.behave(Endpoint::storage, answering(status, "expired"));
        const auto ending = save();
        ASSERT_TRUE(ending.serviceError) << status;
        EXPECT_EQ(ending.serviceError->kind(), Kind::server);
        EXPECT_EQ(ending.serviceError->status(), status);
        EXPECT_EQ(ending.serviceError->body(), QStringLiteral("expired"));
    }
    EXPECT_TRUE(auth.isSignedIn());
}

TEST_F(UploadTest, AnAnswerWithoutAnAddressCannotBeRead)
{
    for (const QByteArray &body :
         {QByteArray(), QByteArray("oops"), QByteArray("{}"), QByteArray(R"({"url":5})"), QByteArray(R"({"url":""})"),
          QByteArray(R"({"url":"not an address"})"), QByteArray("{\"url\":\"\xff\"}"), QByteArray(200'000, '[')}) {
        online.behave(Endpoint::signedUrl, answering(200, body));
        const auto ending = save();
        ASSERT_TRUE(ending.serviceError) << body.left(40).constData();
        EXPECT_EQ(ending.serviceError->kind(), Kind::decoding);
        EXPECT_EQ(ending.text(), QStringLiteral("Could not parse the server response."));
    }
    EXPECT_THAT(online.requests(Endpoint::storage), IsEmpty());
}

TEST_F(UploadTest, AnAddressThatIsNoServersWritesNothing)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("written.png"));
    online.behave(Endpoint::signedUrl, addressIs(QUrl::fromLocalFile(file).toEncoded()));
    EXPECT_EQ(save().transportError.value().kind(), TransportError::Kind::refused);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(UploadTest, NetworkFailuresComeThroughAsTheyAre)
{
    online.behave(Endpoint::signedUrl, {.way = Way::cut});
    EXPECT_EQ(save().transportError.value().kind(), TransportError::Kind::cutOff);
    online.behaveWell();
    online.behave(Endpoint::storage, {.way = Way::cutHalfway, .reply = ServiceReply{.body = "0123456789"}});
    EXPECT_EQ(save().transportError.value().kind(), TransportError::Kind::cutOff);
    online.behave(Endpoint::signedUrl, {.reply = ServiceReply{.padding = 100'000'000}});
    EXPECT_EQ(save().transportError.value().kind(), TransportError::Kind::tooLarge);
    EXPECT_EQ(online.begun(Endpoint::storage), 1);
    EXPECT_TRUE(auth.isSignedIn());
}

TEST_F(UploadTest, ARedirectToAnotherServerIsAnErrorAndGetsNoKey)
{
    ServiceDouble other;
    online.behave(Endpoint::signedUrl,
                  redirectingTo(other.url(QStringLiteral("/v1/user/upload/signed-url")).toEncoded(), 307));
    EXPECT_EQ(save().serviceError.value().status(), 307);
    EXPECT_THAT(other.requests(), IsEmpty());
    EXPECT_TRUE(auth.isSignedIn());
}

TEST_F(UploadTest, TheStudioIsOpenedWithThePicture)
{
    ASSERT_TRUE(openInLumenFold(picture()).result);
    ASSERT_THAT(workspace.openedAddresses, SizeIs(1));
    const QByteArray uploaded = online.url(QString::fromUtf8(online.requests(Endpoint::storage)[0].path())).toEncoded();
    EXPECT_EQ(workspace.openedAddresses[0], config.studioImportURL(QString::fromUtf8(uploaded), std::nullopt));
}

TEST_F(UploadTest, TheStudioIsOpenedWithTheTemplateThatIsChosenByThen)
{
    templates.selected = QStringLiteral("template 7&x");
    ASSERT_TRUE(openInLumenFold(picture()).result);
    EXPECT_EQ(workspace.openedAddresses.value(0).query(QUrl::FullyEncoded).split(u'&').value(1),
              QStringLiteral("id=template%207%26x"));
}

TEST_F(UploadTest, AFailedUploadOpensNothing)
{
    online.behave(Endpoint::storage, answering(403));
    EXPECT_EQ(openInLumenFold(picture()).serviceError.value().status(), 403);
    EXPECT_THAT(workspace.openedAddresses, IsEmpty());
}

TEST_F(UploadTest, UploadsGoOnBesideEachOther)
{
    std::vector<std::shared_ptr<Ending<QUrl>>> uploads;
    for (int upload = 0; upload < 20; ++upload) {
        uploads.push_back(beginSave(picture()));
    }
    online.behave(Endpoint::storage, answering(500), 1);
    EXPECT_TRUE(waitFor([&] { return std::ranges::all_of(uploads, [](const auto &one) { return one->isThere(); }); }));
    EXPECT_EQ(std::ranges::count_if(uploads, [](const auto &one) { return one->result.has_value(); }), 19);
}

TEST_F(UploadTest, UploadsOverASecureConnectionWork)
{
    CertificateAuthority authority;
    const ServiceDouble secure({.identity = authority.identityFor(QStringLiteral("127.0.0.1"))});
    defaults.setString(AppConfig::apiBaseOverrideKey, secure.baseURL().toString());
    // Not before the authority is trusted.
    EXPECT_EQ(save().transportError.value().kind(), TransportError::Kind::untrusted);
    EXPECT_THAT(secure.requests(), IsEmpty());

    HttpClient trusting({.additionalAuthorities = authority.certificate()});
    service = std::make_unique<HttpLumenfoldService>(HttpLumenfoldService::Collaborators{
        .http = trusting, .auth = auth, .config = config, .workspace = workspace, .templates = templates});
    const auto ending = save();
    ASSERT_TRUE(ending.result) << qPrintable(ending.text());
    EXPECT_EQ(ending.result->scheme(), QStringLiteral("https"));
    EXPECT_THAT(secure.requests(Endpoint::storage), SizeIs(1));
    service.reset();
}

TEST_F(UploadTest, WhenTheProgramEndsUploadsAreCalledOff)
{
    online.behave(Endpoint::storage, {.way = Way::stopReading});
    const auto sending = beginSave(picture());
    waitUntil("the upload", [this] { return online.begun(Endpoint::storage) == 1; });
    // The other has just begun: its picture is still being encoded.
    const auto beginning = beginSave(picture());
    service.reset();
    httpOfService.reset();
    EXPECT_EQ(sending->transportError.value().kind(), TransportError::Kind::cancelled);
    EXPECT_EQ(beginning->transportError.value().kind(), TransportError::Kind::cancelled);
}

} // namespace
} // namespace lumenfold::test
