#include "service/http/HttpMessage.h"

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

TEST(HttpMessage, HeadersAreFoundInWhateverLettersTheyAreWritten)
{
    const std::vector<HttpHeader> headers{{"Content-Type", "image/png"}, {"LOCATION", "/one"}, {"Location", "/two"}};
    EXPECT_EQ(headerNamed("location", headers), QByteArray("/one"));
    EXPECT_EQ(headerNamed("content-type", headers), QByteArray("image/png"));
    EXPECT_EQ(headerNamed("Content", headers), std::nullopt);
    EXPECT_EQ(headerNamed("Location", {}), std::nullopt);
}

TEST(HttpMessage, WhateverIsNoControlCharacterCanStandInAHeader)
{
    EXPECT_TRUE(isHeaderValue("ApiKey abc"));
    EXPECT_TRUE(isHeaderValue(""));
    EXPECT_TRUE(isHeaderValue("  spaces\tand \"quotes\"  "));
    EXPECT_TRUE(isHeaderValue(QStringLiteral("ApiKey 🔑 ключ").toUtf8()));
    EXPECT_TRUE(isHeaderValue(QByteArray(10'000, 'k')));
}

TEST(HttpMessage, NothingThatWouldBeginAHeaderOfItsOwnCanStandInOne)
{
    EXPECT_FALSE(isHeaderValue("abc\r\nX-Injected: yes"));
    EXPECT_FALSE(isHeaderValue("abc\n"));
    EXPECT_FALSE(isHeaderValue("\rabc"));
    EXPECT_FALSE(isHeaderValue(QByteArrayView("a\0b", 3)));
    EXPECT_FALSE(isHeaderValue("\x1b[2J"));
    EXPECT_FALSE(isHeaderValue("\x7f"));
}

} // namespace
} // namespace lumenfold
