#include "platform/updates/Appcast.h"

#include "tests/support/updates/SignedFeeds.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

std::vector<AppcastItem> itemsOf(const QByteArray &xml)
{
    const auto items = readAppcast(xml);
    EXPECT_TRUE(items) << xml.left(2000).constData();
    return items.value_or(std::vector<AppcastItem>());
}

QByteArray channelOf(const QByteArray &inside)
{
    return "<rss version=\"2.0\" xmlns:l=\"urn:lumenfold:appcast\"><channel>" + inside + "</channel></rss>";
}

const QByteArray enclosure = "<enclosure url=\"https://d.example/a.deb\" length=\"5\" l:version=\"2.0\"/>";

TEST(Appcast, IsReadInItsOrder)
{
    const auto items = itemsOf(feedOf({{.version = "1.1", .minimumSystemVersion = "2.36"}, {.version = "1.2-beta.1"}}));
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].version, u"1.1");
    EXPECT_EQ(items[0].title, u"LumenFold 1.1");
    EXPECT_EQ(items[0].minimumSystemVersion, u"2.36");
    EXPECT_EQ(items[0].notes, u"What is new.");
    EXPECT_EQ(items[0].page, QUrl(QStringLiteral("https://www.lumenfold.example/download")));
    EXPECT_EQ(items[0].file, QUrl(QStringLiteral("https://www.lumenfold.example/lumenfold.deb")));
    EXPECT_EQ(items[0].length, 1834062);
    EXPECT_EQ(items[1].version, u"1.2-beta.1");
    EXPECT_EQ(items[1].minimumSystemVersion, QString());
}

TEST(Appcast, MayBeEmpty)
{
    EXPECT_TRUE(itemsOf(channelOf("")).empty());
}

TEST(Appcast, NotesMayHoldMarkup)
{
    const auto items = itemsOf(
        channelOf("<item><description><![CDATA[# New <b>&amp;\n\n- one]]></description>" + enclosure + "</item>"));
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].notes, u"# New <b>&amp;\n\n- one");
    const auto escaped =
        itemsOf(channelOf("<item><description>a &lt;b&gt; &#8230;</description>" + enclosure + "</item>"));
    EXPECT_EQ(escaped.at(0).notes, u"a <b> …");
}

TEST(Appcast, WhatIsUnknownIsPassedOver)
{
    const auto items =
        itemsOf(channelOf("<x:y xmlns:x=\"urn:other\"><item/></x:y><item><a><b>c</b></a><l:future>1</l:future>"
                          "<o:enclosure xmlns:o=\"urn:other\" url=\"https://wrong.example/\"/>" +
                          enclosure + "<!-- a comment --><?and an instruction?></item>"));
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].file.host(), u"d.example");
}

TEST(Appcast, AnItemWithoutAVersionOrASecureFileIsNone)
{
    for (const QByteArray bad :
         {"", "<enclosure/>", "<enclosure url=\"https://d.example/a\"/>",
          "<enclosure url=\"https://d.example/a\" version=\"2.0\"/>", "<enclosure l:version=\"2.0\"/>",
          "<enclosure url=\"http://d.example/a\" l:version=\"2.0\"/>",
          "<enclosure url=\"file:///etc/passwd\" l:version=\"2.0\"/>",
          "<enclosure url=\"https:///a\" l:version=\"2.0\"/>",
          "<enclosure url=\"javascript:alert(1)\" l:version=\"2.0\"/>",
          "<enclosure url=\"//d.example/a\" l:version=\"2.0\"/>"}) {
        EXPECT_TRUE(itemsOf(channelOf("<item>" + bad + "</item>")).empty()) << bad.constData();
    }
    // The others are there all the same.
    EXPECT_EQ(itemsOf(channelOf("<item/><item>" + enclosure + "</item>")).size(), 1U);
}

TEST(Appcast, WithoutASecurePageTheFileIsThePage)
{
    for (const QByteArray page : {"", "<link/>", "<link>http://d.example/</link>", "<link>file:///tmp</link>"}) {
        const auto items = itemsOf(channelOf("<item>" + page + enclosure + "</item>"));
        ASSERT_EQ(items.size(), 1U);
        EXPECT_EQ(items[0].page, QUrl(QStringLiteral("https://d.example/a.deb"))) << page.constData();
    }
}

TEST(Appcast, ALengthThatIsNoneIsNotKnown)
{
    for (const QByteArray length : {"-1", "much", "", "99999999999999999999"}) {
        const auto items = itemsOf(channelOf("<item><enclosure url=\"https://d.example/a\" l:version=\"2\" length=\"" +
                                             length + "\"/></item>"));
        ASSERT_EQ(items.size(), 1U);
        EXPECT_FALSE(items[0].length) << length.constData();
    }
}

TEST(Appcast, OtherDocumentsAreNone)
{
    const QByteArray honest = feedOf({{.version = "2.0"}});
    for (const QByteArray &bad :
         {QByteArray(), QByteArray("hello"), QByteArray("{}"), QByteArray("<html><body>Not found</body></html>"),
          QByteArray("<rss/>"), QByteArray("<l:rss xmlns:l=\"urn:lumenfold:appcast\"><channel/></l:rss>"),
          honest.left(honest.size() / 2), honest.left(honest.size() - 10), honest + "<rss/>", honest + "text",
          QByteArray("\x00\x01\xff\xfe", 4), QByteArray(honest).replace("</item>", "</items>"),
          QByteArray(honest).replace("What", "\xff\xff")}) {
        EXPECT_FALSE(readAppcast(bad)) << bad.left(500).constData();
    }
}

TEST(Appcast, ADocumentTypeIsRefused)
{
    const QByteArray laughs =
        "<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]>";
    const QByteArray inside = channelOf("<item><title>&c;</title>" + enclosure + "</item>");
    EXPECT_FALSE(readAppcast(laughs + inside));
    EXPECT_FALSE(readAppcast("<!DOCTYPE rss SYSTEM \"file:///etc/passwd\">" + channelOf("")));
    EXPECT_FALSE(readAppcast("<!DOCTYPE rss>" + channelOf("")));
    // Entities that nobody declared.
    EXPECT_FALSE(readAppcast(inside));
}

TEST(Appcast, IsOfBoundedSize)
{
    const QByteArray honest = feedOf({{.version = "2.0"}});
    const QByteArray padding(maximumAppcastBytes - honest.size(), ' ');
    EXPECT_TRUE(readAppcast(honest + padding));
    EXPECT_FALSE(readAppcast(honest + padding + ' '));

    const auto long_ = itemsOf(feedOf({{.version = "2.0", .notes = QByteArray(100'000, 'n')}}));
    EXPECT_EQ(long_.at(0).notes.size(), 65536);
    EXPECT_TRUE(itemsOf(feedOf({{.version = QByteArray(201, '1')}})).empty());
    EXPECT_EQ(itemsOf(feedOf(QList<FeedItem>(600, {.version = "2.0"}))).size(), 500U);
}

TEST(Appcast, DeepNestingIsNoTrouble)
{
    const QByteArray deep = QByteArray("<a>").repeated(50'000) + QByteArray("</a>").repeated(50'000);
    EXPECT_EQ(itemsOf(channelOf("<item>" + deep + enclosure + "</item>")).size(), 1U);
}

} // namespace
} // namespace lumenfold::test
