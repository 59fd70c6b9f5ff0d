/// The desktop's own way in: org.freedesktop.Application, and launching the program once more.
#include "tests/support/desktop/DesktopTest.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

const QString callerName = QStringLiteral("caller of actions");

class DesktopActions : public DesktopTest {
protected:
    ~DesktopActions() override { QDBusConnection::disconnectFromBus(callerName); }

    /// Asks until the program has its name.
    QDBusMessage act(Desktop &desktop, const QString &action)
    {
        QDBusConnection bus = QDBusConnection::connectToBus(
            desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), callerName);
        QDBusMessage question = QDBusMessage::createMethodCall(
            QStringLiteral("org.lumenfold.LumenFold"), QStringLiteral("/org/lumenfold/LumenFold"),
            QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
        question << action << QVariantList() << QVariantMap();
        QDBusMessage answer;
        waitUntil("the program to be on the bus", [&] {
            const QDBusPendingCall call = bus.asyncCall(question);
            waitUntil("an answer", [&] { return call.isFinished(); });
            answer = call.reply();
            return answer.errorName() != QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown");
        });
        return answer;
    }

    /// The toolkit may add the program's name to a title.
    [[nodiscard]] static bool hasWindow(const Desktop &desktop, const QString &title)
    {
        const QList<WindowInfo> windows = desktop.windowsOfProgram();
        return std::ranges::any_of(windows,
                                   [&title](const WindowInfo &window) { return window.title.startsWith(title); });
    }
};

TEST_F(DesktopActions, Capture)
{
    Desktop &desktop = prepare();
    const QImage background = desktop.paintBackground(knownPicture(desktop.server().size()));
    desktop.startProgram();
    EXPECT_EQ(act(desktop, QStringLiteral("capture-full-screen")).type(), QDBusMessage::ReplyMessage);
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), background));
    desktop.waitForPanels(1);

    (void)act(desktop, QStringLiteral("capture-area"));
    desktop.waitForOverlays({QRect(QPoint(0, 0), desktop.server().size())});
    desktop.pointer().drag({300, 100}, {500, 250});
    desktop.waitForClipboard();
    desktop.waitForPanels(2);
    (void)act(desktop, QStringLiteral("capture-last-area"));
    desktop.waitForClipboard();
    EXPECT_TRUE(waitFor([&] { return desktop.clipboardPicture().size() == QSize(200, 150); }));
}

TEST_F(DesktopActions, Quit)
{
    Desktop &desktop = start();
    EXPECT_EQ(act(desktop, QStringLiteral("quit")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
}

TEST_F(DesktopActions, ThatDoNotExistAreALineInTheLog)
{
    Desktop &desktop = start();
    EXPECT_EQ(act(desktop, QStringLiteral("format\ndisk")).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitFor(
        [&] { return desktop.programLog().contains("LumenFold: asked for an unknown action: format?disk\n"); }));
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
}

TEST_F(DesktopActions, LaunchingItAgainIsOneOfThem)
{
    Desktop &desktop = start();
    // It has its name.
    (void)act(desktop, QStringLiteral("nothing"));
    const std::unique_ptr<Process> second = desktop.startSecondProgram();
    EXPECT_EQ(second->waitForExit(), Process::Exit{.status = 0});
    EXPECT_EQ(second->log(), "LumenFold is already running.\n");
    EXPECT_TRUE(waitFor([&] { return hasWindow(desktop, QStringLiteral("LumenFold Settings")); }));
    EXPECT_TRUE(desktop.isProgramRunning());
}

TEST_F(DesktopActions, Settings)
{
    Desktop &desktop = start();
    (void)act(desktop, QStringLiteral("settings"));
    EXPECT_TRUE(waitFor([&] { return hasWindow(desktop, QStringLiteral("LumenFold Settings")); }));
}

TEST_F(DesktopActions, WithoutABusLaunchingItAgainSaysSoAsEver)
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    Desktop &desktop = prepare({.environment = environment});
    desktop.startProgram();
    const std::unique_ptr<Process> second = desktop.startSecondProgram();
    EXPECT_EQ(second->waitForExit(), Process::Exit{.status = 0});
    EXPECT_EQ(second->log(), "LumenFold is already running.\n");
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

} // namespace
} // namespace lumenfold::test
