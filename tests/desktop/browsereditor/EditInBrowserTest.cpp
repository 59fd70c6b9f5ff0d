/// Edit on a real card, with the browser as editor location: the picture is at the service and the studio is opened.
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/service/ServiceDouble.h"

#include <QFile>
#include <QUrlQuery>

namespace lumenfold::test {
namespace {

class EditInBrowser : public DesktopTest {
protected:
    /// A desktop with one card, whose program talks to the double and whose `xdg-open` writes down what it is given.
    Desktop &startWithCard()
    {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("PATH"), m_programs.path() + u':' + qEnvironmentVariable("PATH"));
        Desktop &desktop = prepare({.size = cardFriendlyScreen, .environment = environment});
        write(m_programs.filePath(QStringLiteral("xdg-open")),
              "#!/bin/sh\nprintf '%s\\n' \"$1\" >>'" + m_opened.toUtf8() + "'\n");
        EXPECT_TRUE(QFile::setPermissions(m_programs.filePath(QStringLiteral("xdg-open")),
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        writeSettings(desktop, "[General]\nLumenFold.editorLocation=browser\nLumenFold.selectedTemplateId=template-7\n"
                               "LumenFold.apiBaseURLOverride=" +
                                   service.baseURL().toEncoded() + "\n");
        desktop.startProgram();
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        desktop.waitForPanels(1);
        return desktop;
    }

    static void clickEdit(Desktop &desktop)
    {
        const QRect card = CardColumn{.workArea = desktop.workArea()}.slot(0);
        desktop.pointer().moveTo(card.center());
        desktop.waitForStillPicture();
        constexpr int aboveTheMiddle = 16;
        desktop.pointer().click(card.center() - QPoint(0, aboveTheMiddle));
    }

    [[nodiscard]] QByteArrayList opened() const
    {
        QFile file(m_opened);
        return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
    }

    using Endpoint = ServiceDouble::Endpoint;
    ServiceDouble service;

private:
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
        file.write(bytes);
    }

    QTemporaryDir m_programs;
    const QString m_opened = m_programs.filePath(QStringLiteral("opened"));
};

TEST_F(EditInBrowser, UploadsThePictureAndOpensTheStudioOnIt)
{
    Desktop &desktop = startWithCard();
    clickEdit(desktop);
    waitUntil("xdg-open", [this] { return opened().size() == 2; });

    ASSERT_EQ(service.requests(Endpoint::storage).size(), 1);
    const ReceivedRequest stored = service.requests(Endpoint::storage)[0];
    EXPECT_EQ(stored.body, desktop.clipboardPng());
    const QUrl address(QString::fromUtf8(opened()[0]), QUrl::StrictMode);
    EXPECT_EQ(address.path(), QStringLiteral("/studio"));
    const QUrlQuery query(address);
    EXPECT_EQ(query.queryItems().size(), 2);
    EXPECT_EQ(query.queryItemValue(QStringLiteral("src"), QUrl::FullyDecoded),
              service.url(QString::fromUtf8(stored.path())).toString());
    EXPECT_EQ(query.queryItemValue(QStringLiteral("id")), QStringLiteral("template-7"));
}

TEST_F(EditInBrowser, WhatFailsOpensNothingAndTheLogHoldsNoSecret)
{
    Desktop &desktop = startWithCard();
    service.behave(Endpoint::storage, answering(503, "later"));
    clickEdit(desktop);
    waitUntil("the log",
              [&] { return desktop.programLog().contains("LumenFold upload error: Server returned 503: later"); });
    EXPECT_TRUE(opened().isEmpty());
    const QByteArray key = service.requests(Endpoint::signedUrl)[0].header("Authorization").value_or("");
    EXPECT_TRUE(key.startsWith("ApiKey "));
    EXPECT_FALSE(desktop.programLog().contains(key.mid(7)));
    EXPECT_FALSE(desktop.programLog().contains("signature"));
}

TEST_F(EditInBrowser, TheProgramEndsInTheMiddleOfAnUpload)
{
    Desktop &desktop = startWithCard();
    service.behave(Endpoint::storage, {.way = Behaviour::Way::stopReading});
    clickEdit(desktop);
    waitUntil("the upload", [this] { return service.begun(Endpoint::storage) == 1; });
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    EXPECT_FALSE(desktop.programLog().contains("upload error"));
}

} // namespace
} // namespace lumenfold::test
