/// The tool that signs feeds makes what the program trusts.
#include "platform/updates/FeedSignature.h"
#include "platform/updates/UpdateSearch.h"
#include "tests/support/desktop/Process.h"
#include "tests/support/updates/SignedFeeds.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class SignFeed : public ::testing::Test {
protected:
    /// Its output; the test fails when it does.
    [[nodiscard]] QByteArray sign(const QStringList &arguments) const
    {
        Process process({.program = QStringLiteral(LUMENFOLD_SIGN_FEED),
                         .arguments = arguments,
                         .logFile = m_folder.filePath(QStringLiteral("log"))});
        EXPECT_EQ(process.waitForExit(), Process::Exit{.status = 0}) << process.log().constData();
        return process.log();
    }

    void writeFeed(const QByteArray &bytes) const
    {
        QFile file(m_feed);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    [[nodiscard]] QByteArray feed() const
    {
        QFile file(m_feed);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QString foundWith(const QByteArray &publicKey) const
    {
        const auto outcome = updateIn(feed(), {.publicKey = publicKey, .version = QStringLiteral("1.0")});
        return outcome && *outcome ? (*outcome)->version : QString();
    }

    const QTemporaryDir m_folder;
    const QString m_key = m_folder.filePath(QStringLiteral("key.pem"));
    const QString m_feed = m_folder.filePath(QStringLiteral("appcast.xml"));
};

TEST_F(SignFeed, MakesAKeyAndSignsWithIt)
{
    const auto publicKey = readPublicKey(sign({QStringLiteral("--new-key"), m_key}));
    ASSERT_TRUE(publicKey);
    EXPECT_EQ(QFileInfo(m_key).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    writeFeed(feedOf({{.version = "2.0"}}));
    EXPECT_EQ(foundWith(*publicKey), QString());
    (void)sign({m_key, m_feed});
    EXPECT_EQ(foundWith(*publicKey), u"2.0");

    // A feed that was changed is signed anew, and once.
    writeFeed(feed().replace("2.0", "3.0"));
    EXPECT_EQ(foundWith(*publicKey), QString());
    (void)sign({m_key, m_feed});
    EXPECT_EQ(foundWith(*publicKey), u"3.0");
    EXPECT_EQ(feed().count("ed25519:"), 1);
}

TEST_F(SignFeed, AFeedWithoutAnEndOfItsLastLineIsSignedToo)
{
    const auto publicKey = readPublicKey(sign({QStringLiteral("--new-key"), m_key}));
    ASSERT_TRUE(publicKey);
    writeFeed(feedOf({{.version = "2.0"}}).trimmed());
    (void)sign({m_key, m_feed});
    EXPECT_EQ(foundWith(*publicKey), u"2.0");
}

} // namespace
} // namespace lumenfold::test
