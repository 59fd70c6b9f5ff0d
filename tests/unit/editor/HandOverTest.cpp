#include "editor/bridge/HandOver.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

QJsonObject members(const HandOver &handOver)
{
    return QJsonDocument::fromJson(handOverMembers(handOver)).object();
}

TEST(HandOverTest, SaysHelloWithAllThatThereIs)
{
    EXPECT_EQ(members({.screenshotId = QStringLiteral("1"),
                       .apiKey = QStringLiteral("key"),
                       .templateId = QStringLiteral("template-7")}),
              (QJsonObject{{QStringLiteral("type"), QStringLiteral("hello")},
                           {QStringLiteral("provider"), QStringLiteral("electron")},
                           {QStringLiteral("screenshotId"), QStringLiteral("1")},
                           {QStringLiteral("apiKey"), QStringLiteral("key")},
                           {QStringLiteral("templateId"), QStringLiteral("template-7")}}));
}

TEST(HandOverTest, WhatIsEmptyOrMissingIsLeftOut)
{
    const QJsonObject plain{{QStringLiteral("type"), QStringLiteral("hello")},
                            {QStringLiteral("provider"), QStringLiteral("electron")}};
    EXPECT_EQ(members({}), plain);
    EXPECT_EQ(members({.screenshotId = QString(), .apiKey = QString(), .templateId = QString()}), plain);
}

TEST(HandOverTest, WhateverAMemberHoldsItStaysText)
{
    const QString nasty = QString::fromUtf8("\"}; alert('1');</script>\\\n\u2028");
    EXPECT_EQ(members({.screenshotId = nasty}).value(u"screenshotId").toString(), nasty);
}

} // namespace
} // namespace lumenfold::test
