/// How the program comes and goes.
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/DesktopTest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

namespace lumenfold::test {
namespace {

class StartAndQuit : public DesktopTest {
protected:
    static void expectThatItCaptures(Desktop &desktop)
    {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        EXPECT_FALSE(desktop.clipboardPicture().isNull());
        EXPECT_TRUE(desktop.isProgramRunning());
    }
};

TEST_F(StartAndQuit, ShowsNothingAndTakesNoFocusAtStart)
{
    Desktop &desktop = prepare();
    desktop.paintBackground(knownPicture(desktop.server().size()));
    TestWindow &window = desktop.openWindow();
    window.focus();
    window.forgetInput();
    const QImage before = desktop.waitForStillPicture();
    desktop.startProgram();
    EXPECT_TRUE(samePicture(desktop.waitForStillPicture(), before));
    EXPECT_TRUE(window.hasFocus());
    EXPECT_EQ(window.focusLosses(), 0);
}

TEST_F(StartAndQuit, ASecondOneSaysSoAndEnds)
{
    Desktop &desktop = start();
    const std::unique_ptr<Process> second = desktop.startSecondProgram();
    EXPECT_EQ(second->waitForExit(), Process::Exit{.status = 0});
    EXPECT_EQ(second->log(), "LumenFold is already running.\n");
    expectThatItCaptures(desktop);
}

TEST_F(StartAndQuit, EndsInOrderWhenAsked)
{
    Desktop &desktop = start();
    desktop.press("Super+Alt+1");
    const xcb_window_t card = desktop.waitForPanels(1).first().id;
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    // The window manager's own helper windows stay.
    const QList<WindowInfo> left = windowsOnScreen(desktop.connection());
    EXPECT_TRUE(std::ranges::none_of(left, [card](const WindowInfo &window) { return window.id == card; }));
    EXPECT_FALSE(desktop.isGrabbed(desktop.keyboard().codeOf("1"), XCB_MOD_MASK_4 | XCB_MOD_MASK_1));

    desktop.startProgram();
    expectThatItCaptures(desktop);
}

TEST_F(StartAndQuit, EndsInOrderDuringASelection)
{
    Desktop &desktop = start();
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({QRect(QPoint(0, 0), desktop.server().size())});
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    TestWindow &window = desktop.openWindow();
    window.focus();
    window.forgetInput();
    desktop.press("a");
    EXPECT_TRUE(waitFor([&] { return window.keyPresses().size() == 1; }));
}

TEST_F(StartAndQuit, SaysWhyItCannotStartWithoutADisplay)
{
    Desktop &desktop = prepare();
    QProcessEnvironment environment = desktop.environment();
    for (const char *nowhere : {"", ":12345"}) {
        environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(nowhere));
        Process process(
            {.program = programPath(), .environment = environment, .logFile = desktop.folders().path("nowhere.log")});
        const auto exit = process.waitForExit();
        ASSERT_TRUE(exit.has_value());
        EXPECT_EQ(exit->signal, 0);
        EXPECT_NE(exit->status, 0);
    }
    const QByteArray log = Process::logAt(desktop.folders().path("nowhere.log"));
    EXPECT_EQ(log.count("LumenFold cannot start: "), 2) << log.constData();
}

TEST_F(StartAndQuit, StartsWithASettingsFileThatMakesNoSense)
{
    Desktop &desktop = prepare();
    writeSettings(desktop, QByteArray("\xff\xfe\0[[[=\n%%%=\n[General\nLumenFold.lastAreaRect=@Variant(\x01\n", 50));
    desktop.startProgram();
    expectThatItCaptures(desktop);
}

TEST_F(StartAndQuit, StartsWithAFolderInPlaceOfItsSettings)
{
    Desktop &desktop = prepare();
    QDir().mkpath(settingsFile(desktop));
    desktop.startProgram();
    expectThatItCaptures(desktop);
}

TEST_F(StartAndQuit, StartsAndEndsWhileTheSessionBusHangs)
{
    // It takes connections and never says a word.
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(QStringLiteral("bus")));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(static_cast<std::size_t>(path.size()), sizeof address.sun_path);
    std::ranges::copy(path, address.sun_path);
    const int bus = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(bus, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(listen(bus, 1), 0);

    QProcessEnvironment environment;
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=") + QFile::decodeName(path));
    Desktop &desktop = prepare({.environment = environment});
    desktop.startProgram();
    expectThatItCaptures(desktop);
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    close(bus);
}

TEST_F(StartAndQuit, StartsWithoutAnyFolderToWriteTo)
{
    Desktop &desktop = prepare({.environment = [] {
        QProcessEnvironment environment;
        for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
            environment.insert(QString::fromLatin1(name), QStringLiteral("/proc/nowhere"));
        }
        return environment;
    }()});
    desktop.startProgram();
    expectThatItCaptures(desktop);
}

} // namespace
} // namespace lumenfold::test
