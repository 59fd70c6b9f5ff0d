#include "platform/remoteactions/ApplicationAdaptor.h"

#include "tests/support/unit/LogWatch.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class ApplicationAdaptorTest : public ::testing::Test {
protected:
    QStringList done;
    QObject object;
    ApplicationAdaptor adaptor{{.activate = [this] { done.append(QStringLiteral("activate")); },
                                .actions = {{QStringLiteral("quit"), [this] { done.append(QStringLiteral("quit")); }}}},
                               &object};
};

TEST_F(ApplicationAdaptorTest, ActionsAreDoneAtOnce)
{
    adaptor.Activate({{QStringLiteral("desktop-startup-id"), QStringLiteral("x")}});
    adaptor.ActivateAction(QStringLiteral("quit"), {}, {});
    EXPECT_EQ(done, QStringList({QStringLiteral("activate"), QStringLiteral("quit")}));
}

TEST_F(ApplicationAdaptorTest, WhatIsNoActionIsIgnored)
{
    expectLogLine(QStringLiteral("LumenFold: asked for an unknown action: "));
    expectLogLine(QStringLiteral("LumenFold: asked for an unknown action: Quit"));
    expectLogLine(QStringLiteral("LumenFold: asked for an unknown action: a?b?c"));
    expectLogLine(QStringLiteral("LumenFold: asked for an unknown action: ") + QString(64, u'x') + QChar(0x2026));
    expectLogLine(QStringLiteral("LumenFold: the action quit takes no parameters"));
    expectLogLine(QStringLiteral("LumenFold: asked to open 2 files, which it does not do"));
    adaptor.ActivateAction(QString(), {}, {});
    adaptor.ActivateAction(QStringLiteral("Quit"), {}, {});
    adaptor.ActivateAction(QStringLiteral("a\nb\u001bc"), {}, {});
    adaptor.ActivateAction(QString(1'000'000, u'x'), {}, {});
    adaptor.ActivateAction(QStringLiteral("quit"), {QVariant(1)}, {});
    adaptor.Open({QStringLiteral("file:///a"), QStringLiteral("file:///b")}, {});
    EXPECT_TRUE(done.isEmpty());
}

} // namespace
} // namespace lumenfold::test
