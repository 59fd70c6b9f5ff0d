#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/GuiTest.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScreen>
#include <QWidget>

#include <csignal>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

TEST(Process, TellsItsStatusAndItsOutput)
{
    const QTemporaryDir folder;
    Process process({.program = QStringLiteral("sh"),
                     .arguments = {QStringLiteral("-c"), QStringLiteral("echo heard; exit 3")},
                     .logFile = folder.filePath(QStringLiteral("log"))});
    EXPECT_EQ(process.waitForExit(), (Process::Exit{.status = 3, .signal = 0}));
    EXPECT_EQ(process.log(), "heard\n");
}

TEST(Process, EndsWithItsObjectEvenWhenStopped)
{
    pid_t pid = 0;
    {
        const Process process({.program = QStringLiteral("sleep"), .arguments = {QStringLiteral("1000")}});
        pid = process.pid();
        process.sendSignal(SIGSTOP);
    }
    EXPECT_EQ(::kill(pid, 0), -1);
}

TEST(Process, RefusesWhatIsNotInstalled)
{
    EXPECT_THROW(Process({.program = QStringLiteral("no-such-program-here")}), std::runtime_error);
}

TEST(WaitUntil, SaysWhatItWaitedFor)
{
    try {
        waitUntil(
            "a blue moon", [] { return false; }, 20ms);
        FAIL();
    } catch (const std::runtime_error &error) {
        EXPECT_STREQ(error.what(), "waited 20 ms for a blue moon");
    }
}

class Session : public ::testing::TestWithParam<WindowManagerKind> {};

TEST_P(Session, ShowsWindowsAndDeliversKeysAndButtons)
{
    XServer server;
    const WindowManager windowManager(server, GetParam());
    Keyboard keyboard(server.display());
    Pointer pointer(server.display());
    TestWindow window(server, {.frame = {200, 150, 300, 200}});

    window.focus();
    keyboard.press("Ctrl+a");
    // Control itself, then the letter.
    ASSERT_TRUE(waitFor([&] { return window.keyPresses().size() == 2; }));
    EXPECT_EQ(window.keyPresses().last().code, keyboard.codeOf("a"));
    EXPECT_EQ(window.keyPresses().last().state, XCB_MOD_MASK_CONTROL);

    // A tiling manager gives it another frame than it asked for.
    const QRect frame = window.frame();
    pointer.click(frame.topLeft() + QPoint(5, 6));
    ASSERT_TRUE(waitFor([&] { return window.buttonPresses().size() == 1; }));
    EXPECT_EQ(window.buttonPresses().first().place, QPoint(5, 6));
    EXPECT_EQ(pointer.place(), frame.topLeft() + QPoint(5, 6));

    const QRect part = frame & QRect(frame.topLeft(), window.picture().size());
    EXPECT_TRUE(
        samePicture(rootPicture(server.connection(), part), window.picture().copy(QRect(QPoint(0, 0), part.size()))));

    const QList<WindowInfo> windows = windowsOf(server.connection(), ::getpid());
    ASSERT_EQ(windows.size(), 1);
    EXPECT_EQ(windows.first().id, window.id());
    EXPECT_EQ(windows.first().frame, frame);
    EXPECT_FALSE(windows.first().overrideRedirect);
    EXPECT_EQ(windows.first().title, QStringLiteral("Test window"));
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, Session,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox,
                                           WindowManagerKind::xfwm4, WindowManagerKind::i3));

TEST(Pictures, EveryShiftOfAKnownPictureShows)
{
    const QImage picture = knownPicture({64, 48});
    EXPECT_EQ(differingPixels(picture, picture), 0);
    EXPECT_GT(differingPixels(picture.copy(0, 0, 63, 48), picture.copy(1, 0, 63, 48)), 2'900);
    EXPECT_GT(differingPixels(picture.copy(0, 0, 64, 47), picture.copy(0, 1, 64, 47)), 2'900);
    EXPECT_GT(differingPixels(picture, knownPicture({64, 48}, 1)), 2'900);
    EXPECT_EQ(differingPixels(picture, knownPicture({64, 47})), -1);
}

TEST(Compositor, ShowsTheBackgroundUnchanged)
{
    XServer server;
    const WindowManager windowManager(server, WindowManagerKind::openbox);
    const Compositor compositor(server, CompositorKind::fading);
    const QImage background = knownPicture(server.size());
    server.paintRoot(background);
    EXPECT_TRUE(waitFor([&] { return differingPixels(rootPicture(server.connection()), background) == 0; }));
}

TEST(TestWindow, FillsTheScreenWhenItIsFullScreen)
{
    XServer server;
    const WindowManager windowManager(server, WindowManagerKind::openbox);
    TestWindow window(server);
    window.setFullScreen(FullScreen::yes);
    EXPECT_EQ(window.frame(), QRect(QPoint(0, 0), server.size()));
}

class OnTheSharedServer : public ::testing::Test {
protected:
    XServer &m_server = guiTestServer();
};

TEST_F(OnTheSharedServer, QtHasItsScaleAndItsMonitors)
{
    ASSERT_EQ(QGuiApplication::screens().size(), 1);
    EXPECT_EQ(QGuiApplication::primaryScreen()->devicePixelRatio(), 2);
    EXPECT_EQ(QGuiApplication::primaryScreen()->geometry(), QRect(0, 0, 640, 400));

    m_server.setMonitors(
        {{.name = "left", .frame = {0, 0, 640, 800}}, {.name = "right", .frame = {640, 0, 640, 800}, .primary = true}});
    ASSERT_TRUE(waitFor([] { return QGuiApplication::screens().size() == 2; }));
    EXPECT_TRUE(waitFor([] { return QGuiApplication::primaryScreen()->geometry().size() == QSize(320, 400); }));

    m_server.setMonitors({});
    EXPECT_TRUE(waitFor([] { return QGuiApplication::screens().size() == 1; }));
    EXPECT_TRUE(waitFor([] { return QGuiApplication::primaryScreen()->geometry() == QRect(0, 0, 640, 400); }));
}

TEST_F(OnTheSharedServer, ClipboardComesInPieces)
{
    ClipboardReader reader(m_server.display());
    EXPECT_EQ(reader.owner(), xcb_window_t{XCB_NONE});
    EXPECT_EQ(reader.read("image/png", 100ms), std::nullopt);

    // More than the server takes in one request.
    QByteArray large(20'000'000, '\0');
    for (qsizetype i = 0; i < large.size(); ++i) {
        large[i] = static_cast<char>(i * 31 / 7);
    }
    auto *contents = new QMimeData;
    contents->setData(QStringLiteral("image/png"), large);
    QGuiApplication::clipboard()->setMimeData(contents);

    ASSERT_TRUE(waitFor([&] { return reader.ownerChanges() == 1; }));
    EXPECT_TRUE(reader.targets().contains(QStringLiteral("image/png")));
    EXPECT_EQ(reader.read("image/png"), large);
    EXPECT_GT(reader.pieces(), 1);
    // The toolkit answers with nothing in it where it should refuse.
    EXPECT_EQ(reader.read("text/plain").value_or(QByteArray()), QByteArray());
    QGuiApplication::clipboard()->clear();
}

} // namespace
} // namespace lumenfold::test

int main(int argc, char **argv)
{
    return lumenfold::test::runGuiTests(argc, argv, {.scale = 2});
}
