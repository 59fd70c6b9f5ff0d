#include "tests/desktop/account/OnlineDesktopTest.h"

#include "tests/desktop/ProgramSettings.h"

#include <QFile>

namespace lumenfold::test {

Desktop &OnlineDesktopTest::prepareOnline(DesktopOptions options, const QByteArray &moreSettings)
{
    QFile browser(m_programs.filePath(QStringLiteral("xdg-open")));
    EXPECT_TRUE(browser.open(QIODevice::WriteOnly));
    browser.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >>'" + m_opened.toUtf8() + "'\n");
    browser.close();
    EXPECT_TRUE(browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    options.environment.insert(QStringLiteral("PATH"), m_programs.path() + u':' + qEnvironmentVariable("PATH"));
    Desktop &desktop = prepare(options);
    writeSettings(desktop, "[General]\nLumenFold.editorLocation=browser\nLumenFold.apiBaseURLOverride=" +
                               service.baseURL().toEncoded() + '\n' + moreSettings);
    return desktop;
}

void OnlineDesktopTest::editACapture(Desktop &desktop)
{
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.waitForPanels(1);
    const QRect card = CardColumn{.workArea = desktop.workArea()}.slot(0);
    desktop.pointer().moveTo(card.center());
    desktop.waitForStillPicture();
    // The upper one of the two rows of buttons in its middle.
    constexpr int aboveTheMiddle = 16;
    desktop.pointer().click(card.center() - QPoint(0, aboveTheMiddle));
}

QByteArrayList OnlineDesktopTest::opened() const
{
    QFile file(m_opened);
    QByteArrayList lines = file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
    // Each line ends; what has not is still being written.
    if (!lines.isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

} // namespace lumenfold::test
