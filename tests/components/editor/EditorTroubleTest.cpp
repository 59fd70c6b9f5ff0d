/// Servers and processes that are not there.
#include "tests/components/editor/EditorDesk.h"

#include "tests/support/service/Certificates.h"

#include <csignal>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

class EditorTroubleTest : public EditorDesk {
protected:
    /// What the web engine says of it is no text of ours.
    static void expectTroubles(int count)
    {
        const QStringList lines = logLines().filter(u"LumenFold: the editor's page is not there: "_s);
        EXPECT_EQ(lines.size(), count);
        for (const QString &line : lines) {
            expectLogLine(line);
        }
    }
};

TEST_F(EditorTroubleTest, AServiceThatIsSwitchedOffAndOnAgain)
{
    const quint16 port = static_cast<quint16>(service->baseURL().port());
    service.reset();
    present(noise({64, 48}), u"1"_s);
    waitForNotice(u"The editor cannot be reached"_s);
    service = std::make_unique<ServiceDouble>(ServiceDouble::Options{.port = port});
    press(u"Try Again"_s);
    EXPECT_TRUE(waitFor([&] { return !told("shown").isEmpty(); }, patience));
    EXPECT_FALSE(window()->showsNotice());
    EXPECT_EQ(told("shown").first().queryItemValue(u"screenshotId"_s), u"1"_s);
    expectTroubles(1);
}

TEST_F(EditorTroubleTest, ARendererThatIsKilledIsReloadedWithItsPicture)
{
    presentAndWait(noise({64, 48}), u"1"_s);
    const QList<pid_t> processes = renderers();
    ASSERT_FALSE(processes.isEmpty());
    for (const pid_t process : processes) {
        ::kill(process, SIGKILL);
    }
    waitForNotice(u"The editor has stopped working"_s);
    press(u"Reload"_s);
    ASSERT_TRUE(waitFor([&] { return told("shown").size() == 2; }, patience));
    EXPECT_FALSE(window()->showsNotice());
    strike("e");
    waitForExports(1);
    expectTroubles(1);
}

TEST_F(EditorTroubleTest, AServerWithoutACertificateThatHoldsGetsNothing)
{
    CertificateAuthority authority;
    const ServiceDouble impostor({.identity = authority.identityFor(u"127.0.0.1"_s)});
    defaults.setRaw(AppConfig::editorBaseOverrideKey, impostor.baseURL().toString());
    present(noise({64, 48}));
    waitForNotice(u"The editor's server cannot be trusted"_s);
    EXPECT_TRUE(impostor.requests().isEmpty());
    expectTroubles(1);
}

TEST_F(EditorTroubleTest, AnswersThatAreCutOffOrNonsense)
{
    for (const Behaviour::Way way : {Behaviour::Way::cut, Behaviour::Way::nonsense}) {
        service->behave(ServiceDouble::Endpoint::page, {.way = way});
        present(noise({64, 48}));
        waitForNotice(u"The editor cannot be reached"_s);
        closeWindow();
    }
    expectTroubles(2);
}

TEST_F(EditorTroubleTest, WhatTheServerSaysOfAMissingPageIsShown)
{
    service->behave(ServiceDouble::Endpoint::page, answering(503, "closed today"));
    present(noise({64, 48}));
    EXPECT_TRUE(waitFor([&] { return service->requests(ServiceDouble::Endpoint::page).size() == 1; }, patience));
    EXPECT_TRUE(staysTrue([&] { return !window()->showsNotice(); }, std::chrono::milliseconds(300)));
}

} // namespace
} // namespace lumenfold::test
