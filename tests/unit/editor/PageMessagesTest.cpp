#include "editor/bridge/PageMessages.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

QJsonObject json()
{
    return {{u"document"_s, u"d"_s}, {u"message"_s, 3},   {u"length"_s, 1},   {u"name"_s, u"n"_s},
            {u"origin"_s, u"o"_s},   {u"isText"_s, true}, {u"text"_s, u"t"_s}};
}

QJsonObject jsonWith(const QString &name, const QJsonValue &value)
{
    QJsonObject changed = json();
    changed.insert(name, value);
    return changed;
}

TEST(PageMessageTest, IsReadFromWhatOurScriptSends)
{
    const auto read = readPageMessage(json());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->document, u"d"_s);
    EXPECT_EQ(read->number, 3);
    EXPECT_EQ(read->length, 1);
    EXPECT_EQ(read->name, u"n"_s);
    EXPECT_EQ(read->origin, u"o"_s);
    EXPECT_TRUE(read->isText);
    EXPECT_EQ(read->text, u"t"_s);
}

TEST(PageMessageTest, ALongTextIsNotInIt)
{
    QJsonObject announced = jsonWith(u"text"_s, QJsonValue());
    announced.insert(u"length"_s, 20'000'000);
    const auto read = readPageMessage(announced);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isText);
    EXPECT_EQ(read->length, 20'000'000);
    EXPECT_EQ(read->text, std::nullopt);
}

TEST(PageMessageTest, MayBeEmptyOrNoText)
{
    QJsonObject empty = jsonWith(u"text"_s, QString());
    empty.insert(u"length"_s, 0);
    ASSERT_TRUE(readPageMessage(empty));
    EXPECT_EQ(readPageMessage(empty)->text, QString());

    QJsonObject noText = jsonWith(u"text"_s, QJsonValue());
    noText.insert(u"isText"_s, false);
    noText.insert(u"length"_s, 0);
    ASSERT_TRUE(readPageMessage(noText));
    EXPECT_FALSE(readPageMessage(noText)->isText);
    EXPECT_EQ(readPageMessage(noText)->text, std::nullopt);
}

TEST(PageMessageTest, AnythingElseIsNone)
{
    for (const QString &name : json().keys()) {
        for (const QJsonValue &wrong : {QJsonValue(QJsonObject()), QJsonValue(-1), QJsonValue(1.5), QJsonValue(1e300),
                                        QJsonValue(QJsonArray())}) {
            EXPECT_FALSE(readPageMessage(jsonWith(name, wrong))) << qPrintable(name);
        }
    }
    EXPECT_FALSE(readPageMessage({}));
    // A text of another length than it says, and one that says that it is none.
    EXPECT_FALSE(readPageMessage(jsonWith(u"length"_s, 2)));
    EXPECT_FALSE(readPageMessage(jsonWith(u"isText"_s, false)));
}

TEST(PageMessageTest, OneThatIsTooLongIsNone)
{
    QJsonObject announced = jsonWith(u"text"_s, QJsonValue());
    announced.insert(u"length"_s, maximumMessageLength);
    EXPECT_TRUE(readPageMessage(announced));
    announced.insert(u"length"_s, maximumMessageLength + 1);
    EXPECT_FALSE(readPageMessage(announced));
}

} // namespace
} // namespace lumenfold::test
