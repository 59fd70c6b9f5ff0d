#include "service/wire/Wire.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

/// What no reader can do anything with.
std::vector<QByteArray> unreadable()
{
    const QByteArray whole = R"({"user":{"email":"a@b.example"},"templates":[],"url":"https://a.example"})";
    const auto utf16 = QString::fromUtf8(whole);
    return {
        "",
        " \n",
        "null",
        "[]",
        "7",
        "\"text\"",
        "{}",
        "oops",
        "<html><body>502</body></html>",
        whole.chopped(1),
        whole + whole,
        whole + '\0',
        QByteArray(reinterpret_cast<const char *>(utf16.utf16()), utf16.size() * 2),
        "{\"url\":\"https://a.example/\xff\",\"templates\":[],\"user\":{\"email\":\"\xe9\"}}",
        QByteArray(100'000, '['),
        QByteArray(2000, '[') + QByteArray(2000, ']'),
        QByteArray("{\"user\":").repeated(5000) + "1" + QByteArray("}").repeated(5000),
        R"({"user":[],"templates":{},"url":{}})",
        R"({"user":"a@b.example","templates":"none","url":5})",
        R"({"user":null,"templates":null,"url":null})",
    };
}

TEST(Wire, NothingIsReadOutOfWhatCannotBeRead)
{
    for (const QByteArray &json : unreadable()) {
        EXPECT_FALSE(readUser(json)) << json.left(80).constData();
        EXPECT_FALSE(readTemplates(json)) << json.left(80).constData();
        EXPECT_FALSE(readSignedUrl(json)) << json.left(80).constData();
    }
}

TEST(Wire, AUserNeedsAnEmailAddressOnly)
{
    EXPECT_EQ(readUser(R"({"user":{"email":"someone"}})"), LumenfoldUser{.email = QStringLiteral("someone")});
    EXPECT_EQ(readUser(R"({"user":{"email":"s","firstname":null,"tier":null}})"),
              LumenfoldUser{.email = QStringLiteral("s")});
    EXPECT_EQ(readUser(R"({"x":1,"user":{"email":"ü@b","firstname":"Ada","tier":"pro","id":{"a":[1]}}})"),
              (LumenfoldUser{
                  .email = QStringLiteral("ü@b"), .firstname = QStringLiteral("Ada"), .tier = QStringLiteral("pro")}));
}

TEST(Wire, AUserWithSomethingElseThanTextInItIsNone)
{
    EXPECT_FALSE(readUser(R"({"user":{"firstname":"Ada"}})"));
    EXPECT_FALSE(readUser(R"({"user":{"email":5}})"));
    EXPECT_FALSE(readUser(R"({"user":{"email":null}})"));
    EXPECT_FALSE(readUser(R"({"user":{"email":"s","firstname":5}})"));
    EXPECT_FALSE(readUser(R"({"user":{"email":"s","tier":["pro"]}})"));
    EXPECT_FALSE(readUser(R"({"user":{"email":"half \ud83d"}})"));
    EXPECT_FALSE(readUser(R"({"email":"s"})"));
}

TEST(Wire, TemplatesKeepTheOrderOfTheService)
{
    const auto templates = readTemplates(R"({"templates":[
        {"_id":"2","name":"Zebra","previewUrl":"https://p.example/2","editedAt":"2024-05-02T10:00:00Z","pages":3},
        {"_id":"1","name":"Ape"}],"next":null})");
    ASSERT_TRUE(templates);
    EXPECT_THAT(*templates, ElementsAre(LumenfoldTemplate{.id = QStringLiteral("2"),
                                                          .name = QStringLiteral("Zebra"),
                                                          .previewUrl = QStringLiteral("https://p.example/2"),
                                                          .editedAt = QStringLiteral("2024-05-02T10:00:00Z")},
                                        LumenfoldTemplate{.id = QStringLiteral("1"), .name = QStringLiteral("Ape")}));
    EXPECT_THAT(readTemplates(R"({"templates":[]})").value(), SizeIs(0));
}

TEST(Wire, WhatATemplateLacksIsLeftOut)
{
    for (const char *missing : {R"({"_id":"1"})", R"({"_id":"1","name":5,"previewUrl":5,"editedAt":5})",
                                R"({"_id":"1","name":null,"previewUrl":null,"editedAt":null})",
                                R"({"_id":"1","name":["x"],"previewUrl":{},"editedAt":true})",
                                R"({"_id":"1","name":"\udc00","previewUrl":"\ud83d"})"}) {
        const auto templates = readTemplates(QByteArray(R"({"templates":[)") + missing + "]}");
        ASSERT_TRUE(templates) << missing;
        EXPECT_THAT(*templates, ElementsAre(LumenfoldTemplate{.id = QStringLiteral("1"),
                                                              .name = QStringLiteral("Untitled template")}))
            << missing;
    }
    EXPECT_EQ(readTemplates(R"({"templates":[{"_id":"","name":""}]})"),
              (std::vector<LumenfoldTemplate>{{.id = QString(), .name = QString()}}));
}

TEST(Wire, OneTemplateWithoutAnIdSpoilsTheList)
{
    for (const char *spoilt :
         {R"({"name":"A"})", R"({"id":"1","name":"A"})", R"({"_id":5})", R"({"_id":null})", R"("1")", "null", "[]"}) {
        EXPECT_FALSE(readTemplates(QByteArray(R"({"templates":[{"_id":"1"},)") + spoilt + "]}")) << spoilt;
    }
}

TEST(Wire, OfTwoMembersWithOneNameTheLastCounts)
{
    EXPECT_EQ(readUser(R"({"user":{"email":"first","email":"last"}})"), LumenfoldUser{.email = QStringLiteral("last")});
    EXPECT_EQ(readSignedUrl(R"({"url":"https://first.example/","url":"https://last.example/"})"),
              QUrl(QStringLiteral("https://last.example/")));
    EXPECT_FALSE(readTemplates(R"({"templates":[],"templates":5})"));
}

TEST(Wire, ASignedAddressIsReadToTheCharacter)
{
    const QByteArray address = "https://storage.example:8443/bucket/A%20b%2Fc.png?X-Amz-Credential=AK%2F2024%2Fs3"
                               "&X-Amz-Signature=ab%2Bcd%3D%3D&x=a+b&y=%C3%BC&empty=";
    const auto url = readSignedUrl(R"({"url":")" + address + R"("})");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->toEncoded(), address);
}

TEST(Wire, WhatIsNoAddressIsNotRead)
{
    for (const char *text : {"", "not an address", "/relative", "storage.example/a", "https://a b.example/",
                             "https://[/", "https://a.example/%", "https://a.example:port/", "half \\ud83d"}) {
        EXPECT_FALSE(readSignedUrl(QByteArray(R"({"url":")") + text + R"("})")) << text;
    }
}

TEST(Wire, TheRequestForAnAddressHasThreeMembers)
{
    const QString name = QStringLiteral("1B4E28BA-2FA1-11D2-883F-0016D3CCA427.png");
    const QJsonObject body = QJsonDocument::fromJson(signedUrlRequestBody(name)).object();
    EXPECT_EQ(body, (QJsonObject{{QStringLiteral("fileName"), name},
                                 {QStringLiteral("contentType"), QStringLiteral("image/png")},
                                 {QStringLiteral("type"), QStringLiteral("image")}}));
}

TEST(Wire, ALongListIsRead)
{
    QByteArray list = R"({"templates":[)";
    for (int number = 0; number < 5000; ++number) {
        list += R"({"_id":")" + QByteArray::number(number) + R"("},)";
    }
    list.chop(1);
    EXPECT_THAT(readTemplates(list + "]}").value(), SizeIs(5000));
}

} // namespace
} // namespace lumenfold
