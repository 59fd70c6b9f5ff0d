#include "editor/bridge/Base64.h"

#include <gtest/gtest.h>

#include <random>

namespace lumenfold::test {
namespace {

TEST(Base64Test, IsWhatTheToolkitMakes)
{
    std::mt19937 random(3);
    for (int length = 0; length < 400; ++length) {
        QByteArray bytes(length, Qt::Uninitialized);
        for (char &byte : bytes) {
            byte = static_cast<char>(random());
        }
        EXPECT_EQ(decodeBase64(bytes.toBase64()), bytes) << length;
    }
}

TEST(Base64Test, KeepsWhatSomebodyElseHolds)
{
    const QByteArray text = "QUJDREVGR0hJ";
    const QByteArray held = text;
    EXPECT_EQ(decodeBase64(text), "ABCDEFGHI");
    EXPECT_EQ(held, "QUJDREVGR0hJ");
}

TEST(Base64Test, AnyOtherTextIsNone)
{
    for (const QByteArray &text :
         {QByteArray("Q"), QByteArray("QUJ"), QByteArray("QUJDR"), QByteArray("QU-_"), QByteArray("QUJD QUJ"),
          QByteArray("QUJD\nQUJ"), QByteArray("QQ==QUJD"), QByteArray("QUJDQ==="), QByteArray("===="),
          QByteArray("QUJDQU\0J", 8), QByteArray("QUJ\xc3\xa4QUJ")}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text.constData();
    }
}

} // namespace
} // namespace lumenfold::test
