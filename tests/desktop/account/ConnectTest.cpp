/// How a person connects the program to the service.
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/service/ServiceDouble.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace lumenfold::test {
namespace {

class Connect : public DesktopTest {
protected:
    /// A desktop whose program talks to the double.
    Desktop &prepareConnected(const DesktopOptions &options)
    {
        Desktop &desktop = prepare(options);
        QDir().mkpath(desktop.folders().path("config/LumenFold"));
        QFile file(desktop.folders().path("config/LumenFold/LumenFold.conf"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[General]\nLumenFold.editorLocation=browser\nLumenFold.apiBaseURLOverride=" +
                   service.baseURL().toEncoded() + "\n");
        return desktop;
    }

    /// Captures, and presses Edit on the card.
    static void editACapture(Desktop &desktop)
    {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        const QRect window = desktop.waitForPanels(1).first().frame;
        desktop.pointer().moveTo(window.center());
        (void)desktop.waitForStillPicture();
        // The upper one of the two rows of buttons in its middle.
        desktop.pointer().click(window.center() - QPoint(0, 16));
    }

    [[nodiscard]] static std::optional<WindowInfo> dialog(const Desktop &desktop)
    {
        const QList<WindowInfo> windows = desktop.windowsOfProgram();
        for (const WindowInfo &window : windows) {
            if (window.title == u"Connect to LumenFold") {
                return window;
            }
        }
        return std::nullopt;
    }

    static void waitForDialog(Desktop &desktop)
    {
        waitUntil("the dialog to have the keys", [&] {
            return dialog(desktop).has_value() &&
                   processOf(desktop.connection(), desktop.connection().focusedWindow()) == desktop.program().pid();
        });
    }

    static void type(Desktop &desktop, std::initializer_list<const char *> keys)
    {
        for (const char *key : keys) {
            desktop.press(key);
        }
    }

    ServiceDouble service;
};

TEST_F(Connect, TheFirstStartAsksForAKeyUntilItHasARightOne)
{
    Desktop &desktop = prepareConnected({.keyring = KeyringKind::empty});
    desktop.startProgram();
    waitForDialog(desktop);
    const int height = dialog(desktop)->frame.height();
    EXPECT_EQ(dialog(desktop)->frame.width(), 420);

    type(desktop, {"w", "r", "o", "n", "g", "Return"});
    // It says what is wrong, for which it needs another line.
    waitUntil("the error", [&] { return dialog(desktop).has_value() && dialog(desktop)->frame.height() > height; });
    ASSERT_FALSE(service.requests(ServiceDouble::Endpoint::user).isEmpty());
    EXPECT_EQ(service.requests(ServiceDouble::Endpoint::user).last().header("Authorization"),
              QByteArray("ApiKey wrong"));
    EXPECT_TRUE(desktop.keyring().items().isEmpty());

    type(desktop, {"Ctrl+a", "d", "e", "m", "o", "minus", "k", "e", "y", "Return"});
    waitUntil("the dialog to close", [&] { return !dialog(desktop).has_value(); });
    const QList<KeyringDaemon::Item> items = desktop.keyring().items();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].attributes, KeyringDaemon::apiKeyAttributes());
    EXPECT_EQ(items[0].secret, QByteArray("demo-key"));

    // The next start asks nobody.
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.startProgram();
    EXPECT_TRUE(staysTrue([&] { return !dialog(desktop).has_value(); }, std::chrono::seconds(1)));
    EXPECT_FALSE(desktop.programLog().contains("demo-key"));
    EXPECT_FALSE(desktop.programLog().contains("wrong"));
}

TEST_F(Connect, CapturesWorkWhileTheDialogIsOpen)
{
    Desktop &desktop = prepareConnected({.keyring = KeyringKind::empty});
    const QImage background = desktop.paintBackground(knownPicture(desktop.server().size()));
    desktop.startProgram();
    waitForDialog(desktop);
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    // Own windows are never in the picture.
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), background));
    EXPECT_TRUE(dialog(desktop).has_value());
}

TEST_F(Connect, ADesktopWithoutAKeyringAsksAtEveryStart)
{
    Desktop &desktop = prepareConnected({.keyring = KeyringKind::none});
    for (int start = 0; start < 2; ++start) {
        desktop.startProgram();
        waitForDialog(desktop);
        EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    }
}

TEST_F(Connect, AKeyringThatHangsHoldsNothingUp)
{
    Desktop &desktop = prepareConnected({});
    desktop.keyring().hang();
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_FALSE(dialog(desktop).has_value());
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.keyring().letGoOn();
}

TEST_F(Connect, EditUploadsTheCardAndOpensTheStudioInTheBrowser)
{
    // A browser of the test's own.
    QTemporaryDir programs;
    const QString opened = programs.filePath(QStringLiteral("opened"));
    QFile opener(programs.filePath(QStringLiteral("xdg-open")));
    ASSERT_TRUE(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\nprintf %s \"$1\" >'" + opened.toUtf8() + ".new'\nmv '" + opened.toUtf8() + ".new' '" +
                 opened.toUtf8() + "'\n");
    opener.close();
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), programs.path() + u':' + qEnvironmentVariable("PATH"));
    Desktop &desktop =
        prepareConnected({.size = cardFriendlyScreen, .compositor = CompositorKind::plain, .environment = environment});
    desktop.startProgram();
    editACapture(desktop);
    waitUntil("the browser", [&] { return QFile::exists(opened); });
    QFile address(opened);
    ASSERT_TRUE(address.open(QIODevice::ReadOnly));
    const QUrl studio = QUrl::fromEncoded(address.readAll());
    EXPECT_EQ(studio.path(), u"/studio");
    const QList<ReceivedRequest> uploads = service.requests(ServiceDouble::Endpoint::storage);
    ASSERT_EQ(uploads.size(), 1);
    EXPECT_TRUE(studio.query(QUrl::FullyDecoded).contains(QString::fromUtf8(uploads[0].path())));
    EXPECT_FALSE(studio.query(QUrl::FullyDecoded).contains(u'?'));
    EXPECT_FALSE(uploads[0].header("Authorization"));
}

TEST_F(Connect, AKeyThatIsRefusedSignsOutAndAnotherIsAskedFor)
{
    Desktop &desktop = prepareConnected({.size = cardFriendlyScreen, .compositor = CompositorKind::plain});
    service.behave(ServiceDouble::Endpoint::signedUrl, answering(403));
    desktop.startProgram();
    EXPECT_FALSE(dialog(desktop).has_value());
    editACapture(desktop);
    waitForDialog(desktop);
    waitUntil("the key to be gone", [&] { return desktop.keyring().items().isEmpty(); });
}

TEST_F(Connect, ALockedKeyAsksNobodyAtTheStart)
{
    Desktop &desktop = prepareConnected({});
    desktop.keyring().lock();
    desktop.startProgram();
    EXPECT_TRUE(staysTrue([&] { return !dialog(desktop).has_value(); }, std::chrono::seconds(1)));
}

} // namespace
} // namespace lumenfold::test
