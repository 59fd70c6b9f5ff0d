#include "platform/updates/UpdateSearch.h"

#include "platform/updates/FeedSignature.h"
#include "tests/support/updates/SignedFeeds.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class UpdateSearchTest : public ::testing::Test {
protected:
    [[nodiscard]] auto search(const QByteArray &feed) const { return updateIn(feed, terms); }

    /// The version that is found, "none", or the number of the error.
    [[nodiscard]] QString found(const QByteArray &feed) const
    {
        const auto outcome = search(feed);
        if (!outcome) {
            return QStringLiteral("error %1").arg(static_cast<int>(outcome.error()));
        }
        return *outcome ? (*outcome)->version : QStringLiteral("none");
    }

    [[nodiscard]] QString foundAmong(const QList<FeedItem> &items) const { return found(signer.sign(feedOf(items))); }

    [[nodiscard]] static QString error(UpdateCheckError error)
    {
        return QStringLiteral("error %1").arg(static_cast<int>(error));
    }

    const FeedSigner signer;
    UpdateTerms terms{
        .publicKey = signer.publicKey(), .version = QStringLiteral("1.3.0"), .systemVersion = QStringLiteral("2.36")};
    const QString untrusted = error(UpdateCheckError::untrusted);
};

TEST_F(UpdateSearchTest, ANewerVersionIsFoundWithAllThatIsKnownOfIt)
{
    const auto outcome = search(signer.sign(feedOf({{.version = "1.4", .notes = "- all new"}})));
    ASSERT_TRUE(outcome && *outcome);
    EXPECT_EQ(**outcome, (AvailableUpdate{.version = QStringLiteral("1.4"),
                                          .title = QStringLiteral("LumenFold 1.4"),
                                          .notes = QStringLiteral("- all new"),
                                          .page = QUrl(QStringLiteral("https://www.lumenfold.example/download"))}));
}

TEST_F(UpdateSearchTest, TheSameAndOlderOnesAreNone)
{
    EXPECT_EQ(foundAmong({}), u"none");
    EXPECT_EQ(foundAmong({{.version = "1.3"}, {.version = "1.2.9"}, {.version = "1.3.0-rc.1"}, {.version = "new"}}),
              u"none");
}

TEST_F(UpdateSearchTest, OfSeveralTheNewestIsFoundWhereverItStands)
{
    EXPECT_EQ(foundAmong({{.version = "1.4"}, {.version = "1.10"}, {.version = "1.9"}}), u"1.10");
    EXPECT_EQ(foundAmong({{.version = "2.0-rc.1"}, {.version = "2.0"}, {.version = "2.0-rc.2"}}), u"2.0");
}

TEST_F(UpdateSearchTest, OneThatDoesNotRunHereIsPassedOver)
{
    EXPECT_EQ(foundAmong({{.version = "3.0", .minimumSystemVersion = "2.37"},
                          {.version = "2.0", .minimumSystemVersion = "2.36"}}),
              u"2.0");
    EXPECT_EQ(foundAmong({{.version = "3.0", .minimumSystemVersion = "bookworm"}}), u"none");
    terms.systemVersion = QStringLiteral("unknown");
    EXPECT_EQ(foundAmong({{.version = "3.0", .minimumSystemVersion = "2.0"}, {.version = "2.0"}}), u"2.0");
}

TEST_F(UpdateSearchTest, ToAVersionThatIsNoneEverythingIsNewer)
{
    terms.version = QStringLiteral("from git");
    EXPECT_EQ(foundAmong({{.version = "0.1"}}), u"0.1");
}

TEST_F(UpdateSearchTest, WithoutASignatureNothingIsBelieved)
{
    const QByteArray feed = feedOf({{.version = "9.0"}});
    EXPECT_EQ(found(feed), untrusted);
    EXPECT_EQ(found({}), untrusted);
    EXPECT_EQ(found(feed + "<!-- ed25519:  -->"), untrusted);
    EXPECT_EQ(found(feed + "<!-- ed25519: AAAA -->"), untrusted);
    EXPECT_EQ(found(feed + "<!-- ed25519: " + QByteArray(64, '\0').toBase64() + " -->"), untrusted);
    EXPECT_EQ(found(feed + "<!-- ed25519: " + QByteArray(86, '*') + "== -->"), untrusted);
    EXPECT_EQ(found(feed + "<!-- ed25519: "), untrusted);
}

TEST_F(UpdateSearchTest, SomebodyElsesSignatureIsNone)
{
    EXPECT_EQ(found(FeedSigner().sign(feedOf({{.version = "9.0"}}))), untrusted);
}

TEST_F(UpdateSearchTest, AnyChangedByteBreaksTheSignature)
{
    const QByteArray genuine = signer.sign(feedOf({{.version = "1.4"}}));
    ASSERT_EQ(found(genuine), u"1.4");
    // The signature itself is among them; only what follows its line does not count.
    for (qsizetype at = 0; at < genuine.size() - 1; ++at) {
        QByteArray changed = genuine;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_NE(found(changed), u"1.4") << at;
    }
    EXPECT_EQ(found(" " + genuine), untrusted);
    EXPECT_EQ(found(genuine + "<rss/>"), untrusted);
    EXPECT_EQ(found(genuine + genuine), untrusted);
    EXPECT_EQ(found(genuine.trimmed() + "\r\n"), u"1.4");
}

TEST_F(UpdateSearchTest, ABrokenFeedThatIsGenuineIsUnreadable)
{
    EXPECT_EQ(found(signer.sign("<rss><channel>")), error(UpdateCheckError::unreadable));
    EXPECT_EQ(found(signer.sign("")), error(UpdateCheckError::unreadable));
}

TEST_F(UpdateSearchTest, WithoutAKeyNoFeedIsTrusted)
{
    terms.publicKey.clear();
    EXPECT_EQ(foundAmong({{.version = "9.0"}}), error(UpdateCheckError::withoutKey));
    terms.publicKey = "short";
    EXPECT_EQ(foundAmong({{.version = "9.0"}}), untrusted);
}

TEST_F(UpdateSearchTest, AKeyIsThirtyTwoBytesInBase64)
{
    EXPECT_EQ(readPublicKey(signer.publicKey().toBase64()), signer.publicKey());
    EXPECT_EQ(readPublicKey(signer.publicKey().toBase64() + '\n'), signer.publicKey());
    for (const QByteArray bad : {"", "AAAA", "not base64 at all, but forty-four letters !!!"}) {
        EXPECT_FALSE(readPublicKey(bad)) << bad.constData();
    }
}

TEST_F(UpdateSearchTest, TheSystemHasAVersion)
{
    EXPECT_TRUE(systemVersion().startsWith(QStringLiteral("2."))) << qPrintable(systemVersion());
}

} // namespace
} // namespace lumenfold::test
