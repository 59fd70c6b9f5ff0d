/// How a person connects the program to the service.
#include "tests/desktop/account/OnlineDesktopTest.h"

namespace lumenfold::test {
namespace {

class Connect : public OnlineDesktopTest {
protected:
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
};

TEST_F(Connect, TheFirstStartAsksForAKeyUntilItHasARightOne)
{
    Desktop &desktop = prepareOnline({.keyring = KeyringKind::empty});
    desktop.startProgram();
    waitForDialog(desktop);
    const int height = dialog(desktop)->frame.height();
    EXPECT_EQ(dialog(desktop)->frame.width(), 420);

    type(desktop, {"w", "r", "o", "n", "g", "Return"});
    // It says what is wrong, for which it needs another line.
    waitUntil("the error", [&] { return dialog(desktop).has_value() && dialog(desktop)->frame.height() > height; });
    ASSERT_FALSE(service.requests(Endpoint::user).isEmpty());
    EXPECT_EQ(service.requests(Endpoint::user).last().header("Authorization"), QByteArray("ApiKey wrong"));
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
    Desktop &desktop = prepareOnline({.keyring = KeyringKind::empty});
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
    Desktop &desktop = prepareOnline({.keyring = KeyringKind::none});
    for (int start = 0; start < 2; ++start) {
        desktop.startProgram();
        waitForDialog(desktop);
        EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    }
}

TEST_F(Connect, AKeyringThatHangsHoldsNothingUp)
{
    Desktop &desktop = prepareOnline({});
    desktop.keyring().hang();
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_FALSE(dialog(desktop).has_value());
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.keyring().letGoOn();
}

TEST_F(Connect, AKeyThatIsRefusedSignsOutAndAnotherIsAskedFor)
{
    Desktop &desktop = prepareOnline({.size = cardFriendlyScreen, .compositor = CompositorKind::plain});
    service.behave(Endpoint::signedUrl, answering(403));
    desktop.startProgram();
    EXPECT_FALSE(dialog(desktop).has_value());
    editACapture(desktop);
    waitForDialog(desktop);
    waitUntil("the key to be gone", [&] { return desktop.keyring().items().isEmpty(); });
}

TEST_F(Connect, ALockedKeyAsksNobodyAtTheStart)
{
    Desktop &desktop = prepareOnline({});
    desktop.keyring().lock();
    desktop.startProgram();
    EXPECT_TRUE(staysTrue([&] { return !dialog(desktop).has_value(); }, std::chrono::seconds(1)));
}

TEST_F(Connect, ALockedKeyIsUnlockedByTheUserWhenItIsNeeded)
{
    Desktop &desktop = prepareOnline({.size = cardFriendlyScreen, .keyringPassword = "master"});
    // The desktop's own window that asks for passwords.
    const Process prompter({.program = QStringLiteral("/usr/libexec/gcr-prompter"),
                            .environment = desktop.environment(),
                            .logFile = desktop.folders().path("prompter.log")});
    desktop.keyring().lock();
    desktop.startProgram();
    editACapture(desktop);
    waitUntil("the question for the password",
              [&] { return processOf(desktop.connection(), desktop.connection().focusedWindow()) == prompter.pid(); });
    EXPECT_TRUE(opened().isEmpty());
    type(desktop, {"m", "a", "s", "t", "e", "r", "Return"});
    waitUntil("the browser", [this] { return opened().size() == 1; });
    EXPECT_EQ(service.requests(Endpoint::signedUrl).last().header("Authorization"), QByteArray("ApiKey demo-key"));
    EXPECT_FALSE(dialog(desktop).has_value());
}

} // namespace
} // namespace lumenfold::test
