/// Edit on a real card, with the browser as editor location: the picture is at the service and the studio is opened.
#include "tests/desktop/account/OnlineDesktopTest.h"

#include <QUrlQuery>

namespace lumenfold::test {
namespace {

class EditInBrowser : public OnlineDesktopTest {
protected:
    Desktop &startProgram()
    {
        Desktop &desktop = prepareOnline({.size = cardFriendlyScreen}, "LumenFold.selectedTemplateId=template-7\n");
        desktop.startProgram();
        return desktop;
    }
};

TEST_F(EditInBrowser, UploadsThePictureAndOpensTheStudioOnIt)
{
    Desktop &desktop = startProgram();
    editACapture(desktop);
    waitUntil("xdg-open", [this] { return opened().size() == 1; });

    ASSERT_EQ(service.requests(Endpoint::storage).size(), 1);
    const ReceivedRequest stored = service.requests(Endpoint::storage)[0];
    EXPECT_EQ(stored.body, desktop.clipboardPng());
    EXPECT_FALSE(stored.header("Authorization"));
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
    Desktop &desktop = startProgram();
    service.behave(Endpoint::storage, answering(503, "later"));
    editACapture(desktop);
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
    Desktop &desktop = startProgram();
    service.behave(Endpoint::storage, {.way = Behaviour::Way::stopReading});
    editACapture(desktop);
    waitUntil("the upload", [this] { return service.begun(Endpoint::storage) == 1; });
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    EXPECT_FALSE(desktop.programLog().contains("upload error"));
}

} // namespace
} // namespace lumenfold::test
