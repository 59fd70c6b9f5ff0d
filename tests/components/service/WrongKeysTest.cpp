#include "tests/components/service/ServiceFixture.h"

namespace lumenfold::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

using WrongKeysTest = ServiceTest;

TEST_F(WrongKeysTest, AKeyGoesOutExactlyAsItIsStored)
{
    online.behave(Endpoint::templates, answering(200, R"({"templates":[]})"));
    for (const QByteArray &key : {QByteArray("  abc"), QByteArray("a \"quoted\" key"), QByteArray("tab\tkey"),
                                  QStringLiteral("ключ 🔑").toUtf8(), QByteArray(10'000, 'k'), QByteArray()}) {
        putKey(key);
        EXPECT_TRUE(fetchTemplates().result) << key.left(20).constData();
        EXPECT_EQ(online.requests().last().header("Authorization"), "ApiKey " + key);
    }
}

TEST_F(WrongKeysTest, AKeyThatCannotStandInAHeaderIsNotSent)
{
    for (const QByteArray &key : {QByteArray("abc\r\nX-Injected: yes"), QByteArray("abc\n"), QByteArray("\rabc"),
                                  QByteArray("a\0b", 3), QByteArray("\x1b[2J")}) {
        putKey(key);
        EXPECT_EQ(save().serviceError.value().kind(), Kind::notAuthenticated);
        EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::notAuthenticated);
        // It is for the service alone to say that a key is wrong.
        EXPECT_TRUE(auth.isSignedIn());
    }
    EXPECT_THAT(online.requests(), IsEmpty());
}

TEST_F(WrongKeysTest, AServerThatRepeatsTheKeyDoesNotBringItIntoTheText)
{
    putKey("very-secret-key");
    online.behave(Endpoint::signedUrl, answering(400, "bad header: ApiKey very-secret-key!"));
    EXPECT_EQ(save().text(), QStringLiteral("Server returned 400: bad header: ApiKey …!"));
}

TEST_F(WrongKeysTest, ALockedKeyringIsAskedFirst)
{
    keyring.setLocked(true);
    EXPECT_TRUE(save().result);
    EXPECT_THAT(keyring.operations, ::testing::Contains(QStringLiteral("unlock ") + AuthService::keychainKey));
}

} // namespace
} // namespace lumenfold::test
