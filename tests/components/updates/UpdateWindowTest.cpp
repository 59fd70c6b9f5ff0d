#include "app/theme/Spinner.h"
#include "app/updates/NotesBrowser.h"
#include "tests/components/updates/UpdatesFixture.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextBlock>

namespace lumenfold::test {
namespace {

const QString skip = QStringLiteral("Skip This Version");
const QString later = QStringLiteral("Remind Me Later");
const QString open = QStringLiteral("Open Download Page");
const QString available = QStringLiteral("LumenFold 1.4.0 is available");

class UpdateWindow : public UpdatesTest {
protected:
    void offer(const QByteArray &notes = "- one\n- two")
    {
        serveSigned({{.version = "1.4.0", .notes = notes}});
        check();
        ASSERT_EQ(heading(), available);
        ASSERT_TRUE(waitFor([] { return hasKeyboard(window()); }));
    }

    [[nodiscard]] static NotesBrowser *notes() { return window()->findChild<NotesBrowser *>(); }
    [[nodiscard]] static bool isGone()
    {
        return waitFor([] { return window() == nullptr; });
    }
};

TEST_F(UpdateWindow, SaysThatItAsks)
{
    behave({.way = Way::silence});
    updater.checkForUpdates();
    ASSERT_TRUE(waitFor([] { return hasKeyboard(window()); }));
    EXPECT_EQ(window()->windowTitle(), u"Software Update");
    EXPECT_EQ(heading(), u"Checking for updates…");
    EXPECT_TRUE(window()->findChild<Spinner *>()->isSpinning());
    EXPECT_EQ(workspace.activations, 1);
    const QPoint off = window()->frameGeometry().center() - window()->screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 40);
    EXPECT_EQ(window()->minimumSize(), window()->maximumSize());

    // Once more is the same window.
    updater.checkForUpdates();
    EXPECT_EQ(workspace.activations, 2);
    EXPECT_EQ(heading(), u"Checking for updates…");
}

TEST_F(UpdateWindow, WhoCancelsSeesNothingMoreOfIt)
{
    behave({.reply = ServiceReply{.body = signer.sign(feedOf({{.version = "1.4.0"}}))},
            .pause = std::chrono::milliseconds(200)});
    updater.checkForUpdates();
    ASSERT_TRUE(waitFor([] { return hasKeyboard(window()); }));
    press(Qt::Key_Escape);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(waitFor([this] { return delegate.told == QStringList{QStringLiteral("1.4.0")}; }));
    EXPECT_EQ(window(), nullptr);
}

TEST_F(UpdateWindow, ReturnOpensTheDownloadPage)
{
    offer();
    EXPECT_TRUE(button(open)->isDefault());
    EXPECT_EQ(button(open)->toolTip(), u"https://www.lumenfold.example/download");
    press(Qt::Key_Return);
    EXPECT_TRUE(isGone());
    EXPECT_EQ(workspace.openedAddresses, QList<QUrl>{QUrl(QStringLiteral("https://www.lumenfold.example/download"))});
    EXPECT_FALSE(defaults.contains(AppcastUpdaterController::skippedVersionKey));
}

TEST_F(UpdateWindow, EscapeAndClosingMeanLater)
{
    offer();
    press(Qt::Key_Escape);
    EXPECT_TRUE(isGone());
    offer();
    window()->close();
    EXPECT_TRUE(isGone());
    offer();
    button(later)->click();
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
    EXPECT_FALSE(defaults.contains(AppcastUpdaterController::skippedVersionKey));
    EXPECT_EQ(delegate.told, QStringList(3, QStringLiteral("1.4.0")));
}

TEST_F(UpdateWindow, ASkippedVersionIsRemembered)
{
    offer();
    button(skip)->click();
    EXPECT_TRUE(isGone());
    EXPECT_EQ(defaults.string(AppcastUpdaterController::skippedVersionKey), QStringLiteral("1.4.0"));
    EXPECT_EQ(delegate.told, QStringList({QStringLiteral("1.4.0"), QStringLiteral("none")}));
}

TEST_F(UpdateWindow, EverythingIsReachedWithTheKeyboard)
{
    offer();
    EXPECT_EQ(QApplication::focusWidget(), button(open));
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), notes());
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), button(skip));
    press(Qt::Key_Return);
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(defaults.contains(AppcastUpdaterController::skippedVersionKey));
}

TEST_F(UpdateWindow, AskingAgainBringsItForward)
{
    offer();
    const QDialog *first = window();
    updater.checkForUpdates();
    EXPECT_EQ(window(), first);
    EXPECT_EQ(workspace.activations, 2);
    EXPECT_EQ(requests(), 1);
}

TEST_F(UpdateWindow, CanBeMadeLargerAndThenTheNotesAre)
{
    offer();
    EXPECT_LT(window()->minimumWidth(), window()->maximumWidth());
    const int height = notes()->height();
    window()->resize(window()->width(), window()->height() + 100);
    EXPECT_TRUE(waitFor([&] { return notes()->height() == height + 100; }));
}

TEST_F(UpdateWindow, AMessageIsClosedByItsButton)
{
    serveSigned({});
    check();
    EXPECT_EQ(heading(), u"You're up to date");
    EXPECT_EQ(window()->minimumSize(), window()->maximumSize());
    button(QStringLiteral("OK"))->click();
    EXPECT_TRUE(isGone());
    // After a message the next question is a new one.
    check();
    EXPECT_EQ(requests(), 2);
}

TEST_F(UpdateWindow, TheNotesAreRead)
{
    offer("# What is new\n\n- **Cards** fly\n- [More](https://more.example/)");
    EXPECT_EQ(notes()->toPlainText(), u"What is new\nCards fly\nMore");
    EXPECT_EQ(notes()->accessibleName(), u"What is new");
    EXPECT_TRUE(notes()->isReadOnly());
}

TEST_F(UpdateWindow, WithoutNotesThatIsSaid)
{
    offer("");
    EXPECT_EQ(notes()->toPlainText(), u"There are no notes about this version.");
}

TEST_F(UpdateWindow, NothingThatTheNotesNameIsLoaded)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("red.png"));
    QImage red(200, 200, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray data = file.readAll().toBase64();
    ServiceDouble stranger;

    offer("A ![](" + path.toUtf8() + ") B ![](file://" + path.toUtf8() + ") C ![](data:image/png;base64," + data +
          ") D ![](" + stranger.url(QStringLiteral("/previews/1.png")).toEncoded() + ") E &lt;img src=\"" +
          path.toUtf8() + "\"&gt; &lt;script&gt;alert(1)&lt;/script&gt;");
    const QImage seen = notes()->grab().toImage();
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            ASSERT_NE(seen.pixelColor(x, y), QColor(Qt::red)) << x << ' ' << y;
        }
    }
    EXPECT_EQ(stranger.openConnections(), 0);
    EXPECT_TRUE(stranger.requests().isEmpty());
    // Markup that is not Markdown is text.
    EXPECT_TRUE(notes()->toPlainText().contains(QStringLiteral("<script>alert(1)</script>")));
}

TEST_F(UpdateWindow, OnlySecureLinksOfTheNotesAreOpened)
{
    offer("[a](https://more.example/)");
    for (const char *link : {"https://more.example/", "http://plain.example/", "file:///etc/passwd",
                             "javascript:alert(1)", "relative", "https://"}) {
        Q_EMIT notes()->anchorClicked(QUrl(QString::fromLatin1(link)));
    }
    EXPECT_EQ(workspace.openedAddresses, QList<QUrl>{QUrl(QStringLiteral("https://more.example/"))});
    EXPECT_NE(window(), nullptr);
}

TEST_F(UpdateWindow, LinksHaveTheColourOfTheWindow)
{
    offer("[More](https://more.example/) and [more](https://most.example/)");
    for (const ColorScheme scheme : {ColorScheme::dark, ColorScheme::light}) {
        appearance.setColorScheme(scheme);
        const QTextBlock block = notes()->document()->begin();
        int links = 0;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().isAnchor()) {
                ++links;
                EXPECT_EQ(it.fragment().charFormat().foreground().color(), window()->palette().color(QPalette::Link));
            }
        }
        EXPECT_EQ(links, 2);
    }
}

TEST_F(UpdateWindow, GoesAwayWithTheProgram)
{
    auto another = std::make_unique<UpdateWindowController>(UpdateWindowController::Collaborators{
        .appearance = appearance, .workspace = workspace, .runningVersion = QStringLiteral("1.3.0")});
    int calls = 0;
    another->showUpdate({.version = QStringLiteral("1.4.0")}, [&](UpdateChoice) { ++calls; });
    another.reset();
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace lumenfold::test
