#include "editor/bridge/PageMessages.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using Outcome = MessageAssembly::Outcome;
using namespace Qt::StringLiterals;

MessagePiece piece(int message, int index, const QString &text, qsizetype length, bool isLast = false)
{
    return {.document = u"document"_s,
            .message = message,
            .index = index,
            .length = length,
            .name = u"lumenfoldImage"_s,
            .origin = u"https://www.example.org"_s,
            .text = text,
            .isLast = isLast};
}

QJsonObject json()
{
    return {{u"document"_s, u"d"_s}, {u"message"_s, 3},     {u"index"_s, 1},     {u"length"_s, 7},
            {u"name"_s, u"n"_s},     {u"origin"_s, u"o"_s}, {u"text"_s, u"t"_s}, {u"last"_s, true}};
}

TEST(MessagePieceTest, IsReadFromWhatOurScriptSends)
{
    const auto read = readMessagePiece(json());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->document, u"d"_s);
    EXPECT_EQ(read->message, 3);
    EXPECT_EQ(read->index, 1);
    EXPECT_EQ(read->length, 7);
    EXPECT_EQ(read->name, u"n"_s);
    EXPECT_EQ(read->origin, u"o"_s);
    EXPECT_EQ(read->text, u"t"_s);
    EXPECT_TRUE(read->isLast);

    QJsonObject noText = json();
    noText.insert(u"text"_s, QJsonValue());
    ASSERT_TRUE(readMessagePiece(noText));
    EXPECT_EQ(readMessagePiece(noText)->text, std::nullopt);
}

TEST(MessagePieceTest, AnythingElseIsNone)
{
    for (const QString &name : json().keys()) {
        for (const QJsonValue &wrong : {QJsonValue(QJsonObject()), QJsonValue(-1), QJsonValue(1.5), QJsonValue(1e300),
                                        QJsonValue(QJsonArray())}) {
            QJsonObject broken = json();
            broken.insert(name, wrong);
            EXPECT_FALSE(readMessagePiece(broken)) << qPrintable(name);
        }
    }
    EXPECT_FALSE(readMessagePiece({}));
}

TEST(MessageAssemblyTest, PutsPiecesTogether)
{
    MessageAssembly assembly;
    EXPECT_EQ(assembly.add(piece(0, 0, u"ab"_s, 5)), Outcome::incomplete);
    EXPECT_EQ(assembly.add(piece(0, 1, u"cd"_s, 5)), Outcome::incomplete);
    EXPECT_EQ(assembly.add(piece(0, 2, u"e"_s, 5, true)), Outcome::complete);
    const PageMessage message = assembly.take();
    EXPECT_EQ(message.name, u"lumenfoldImage"_s);
    EXPECT_EQ(message.body, "abcde");
}

TEST(MessageAssemblyTest, AMessageMayBeEmptyOrNoText)
{
    MessageAssembly assembly;
    EXPECT_EQ(assembly.add(piece(0, 0, QString(), 0, true)), Outcome::complete);
    EXPECT_EQ(assembly.take().body, "");
    MessagePiece noText = piece(1, 0, QString(), 0, true);
    noText.text.reset();
    EXPECT_EQ(assembly.add(noText), Outcome::complete);
    EXPECT_EQ(assembly.take().body, std::nullopt);
}

TEST(MessageAssemblyTest, ANewMessageTakesThePlaceOfOneThatStopped)
{
    MessageAssembly assembly;
    EXPECT_EQ(assembly.add(piece(0, 0, u"ab"_s, 5)), Outcome::incomplete);
    EXPECT_EQ(assembly.add(piece(1, 0, u"xy"_s, 2, true)), Outcome::complete);
    EXPECT_EQ(assembly.take().body, "xy");
}

TEST(MessageAssemblyTest, APieceThatDoesNotFitEndsTheMessage)
{
    MessagePiece otherDocument = piece(0, 1, u"c"_s, 5);
    otherDocument.document = u"another"_s;
    MessagePiece otherName = piece(0, 1, u"c"_s, 5);
    otherName.name = u"lumenfoldLoaded"_s;
    MessagePiece otherOrigin = piece(0, 1, u"c"_s, 5);
    otherOrigin.origin = u"https://evil.example"_s;
    MessagePiece noText = piece(0, 1, u"c"_s, 5);
    noText.text.reset();
    for (const MessagePiece &wrong : {piece(0, 2, u"c"_s, 5), piece(1, 1, u"c"_s, 5), piece(0, 1, u"c"_s, 6),
                                      otherDocument, otherName, otherOrigin, noText, piece(0, 1, u"cdef"_s, 5)}) {
        MessageAssembly assembly;
        EXPECT_EQ(assembly.add(piece(0, 0, u"ab"_s, 5)), Outcome::incomplete);
        EXPECT_EQ(assembly.add(wrong), Outcome::refused);
        EXPECT_EQ(assembly.add(piece(0, 1, u"cde"_s, 5, true)), Outcome::refused);
    }
}

TEST(MessageAssemblyTest, AMessageThatIsShorterThanItSaidIsNone)
{
    MessageAssembly assembly;
    EXPECT_EQ(assembly.add(piece(0, 0, u"ab"_s, 5, true)), Outcome::refused);
}

TEST(MessageAssemblyTest, AMessageThatIsTooLongIsRefusedAtItsFirstPiece)
{
    MessageAssembly assembly;
    EXPECT_EQ(assembly.add(piece(0, 0, u"ab"_s, maximumMessageLength + 1)), Outcome::refused);
    EXPECT_EQ(assembly.add(piece(0, 1, u"ab"_s, maximumMessageLength + 1)), Outcome::refused);
}

} // namespace
} // namespace lumenfold::test
