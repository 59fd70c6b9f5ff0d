/// Edit on a real card, in the program's own editor: the picture goes there, is drawn on, and comes back as a card.
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/service/ServiceDouble.h"

#include <QDir>
#include <QFile>
#include <QUrlQuery>

#include <unistd.h>

#include <algorithm>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

constexpr std::chrono::seconds patience{120};

class EditInEditor : public DesktopTest {
protected:
    /// A desktop with one card of a known picture, whose program finds the editor at the double.
    Desktop &startWithCard(const QByteArray &settings = {})
    {
        QProcessEnvironment environment;
        // The web engine has no sandbox for the superuser, who runs these tests in continuous integration. The program
        // itself never does without one.
        if (::geteuid() == 0) {
            environment.insert(u"QTWEBENGINE_DISABLE_SANDBOX"_s, u"1"_s);
        }
        Desktop &desktop = prepare({.size = cardFriendlyScreen, .environment = environment});
        writeSettings(desktop,
                      "[General]\nLumenFold.editorBaseURLOverride=" + service.baseURL().toEncoded() + "\n" + settings);
        desktop.paintBackground(knownPicture(desktop.server().size()));
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
        // Away from the column, whose pills would count as panels.
        desktop.pointer().moveTo({800, 500});
    }

    [[nodiscard]] static std::optional<WindowInfo> editor(const Desktop &desktop)
    {
        const QList<WindowInfo> windows = desktop.windowsOfProgram();
        for (const WindowInfo &window : windows) {
            if (window.title.startsWith(u"Edit in LumenFold")) {
                return window;
            }
        }
        return std::nullopt;
    }

    /// How many pictures the page has shown.
    [[nodiscard]] qsizetype shown() const
    {
        const auto requests = service.requests(ServiceDouble::Endpoint::page);
        return std::ranges::count(requests, "/editor/shown", &ReceivedRequest::path);
    }

    void openEditor(Desktop &desktop)
    {
        clickEdit(desktop);
        waitUntil(
            "the picture in the editor", [this] { return shown() == 1; }, patience);
        waitForFocus(desktop);
    }

    static void waitForFocus(Desktop &desktop)
    {
        waitUntil("the editor to have the keys", [&] {
            return editor(desktop).has_value() && desktop.connection().focusedWindow() == editor(desktop)->id;
        });
    }

    [[nodiscard]] static bool hasWebEngine(Desktop &desktop)
    {
        QFile maps(u"/proc/%1/maps"_s.arg(desktop.program().pid()));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("WebEngine");
    }

    /// The stored pictures of cards that show something else than the capture.
    [[nodiscard]] static QList<QImage> editedCards(Desktop &desktop, const QImage &capture)
    {
        QList<QImage> edited;
        const QDir folder(desktop.folders().data() + u"/LumenFold/cards"_s);
        const QStringList files = folder.entryList({u"*.png"_s});
        for (const QString &name : files) {
            const QImage picture = QImage(folder.filePath(name)).convertToFormat(QImage::Format_RGB32);
            if (!picture.isNull() && differingPixels(picture, capture) != 0) {
                edited.append(picture);
            }
        }
        return edited;
    }

    /// What the double's editor draws.
    [[nodiscard]] static QImage drawnOn(QImage picture)
    {
        for (int y = 0; y < (picture.height() + 3) / 4; ++y) {
            for (int x = 0; x < (picture.width() + 1) / 2; ++x) {
                picture.setPixel(x, y, qRgb(255, 0, 128));
            }
        }
        return picture;
    }

    ServiceDouble service;
};

TEST_F(EditInEditor, ThePictureGoesThereAndComesBackAsACard)
{
    Desktop &desktop = startWithCard();
    const QImage capture = desktop.clipboardPicture().convertToFormat(QImage::Format_RGB32);
    EXPECT_FALSE(hasWebEngine(desktop));
    openEditor(desktop);
    EXPECT_TRUE(hasWebEngine(desktop));
    EXPECT_EQ(service.requests(ServiceDouble::Endpoint::page).first().target, "/integration/electron?apiKey=demo-key");

    desktop.press("d");
    desktop.press("e");
    desktop.waitForPanels(2);
    EXPECT_FALSE(editor(desktop).has_value());
    waitUntil("the card to be stored", [&] { return editedCards(desktop, capture).size() == 1; });
    EXPECT_TRUE(samePicture(editedCards(desktop, capture).first(), drawnOn(capture)));
    EXPECT_FALSE(desktop.programLog().contains("demo-key"));
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

TEST_F(EditInEditor, TheEditedPictureTakesThePlaceOfItsCardIfTheUserWantsThat)
{
    Desktop &desktop = startWithCard("LumenFold.replaceCardOnEdit=true\n");
    const QImage capture = desktop.clipboardPicture().convertToFormat(QImage::Format_RGB32);
    openEditor(desktop);
    desktop.press("d");
    desktop.press("b");
    waitUntil("the card to be stored", [&] { return editedCards(desktop, capture).size() == 1; });
    desktop.waitForPanels(1);
    EXPECT_TRUE(samePicture(editedCards(desktop, capture).first(), drawnOn(capture)));
}

TEST_F(EditInEditor, TheEditorIsNotInThePicturesThatAreTakenWhileItIsOpen)
{
    Desktop &desktop = startWithCard();
    openEditor(desktop);
    for (int capture = 0; capture < 2; ++capture) {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        EXPECT_TRUE(samePicture(desktop.clipboardPicture(), knownPicture(desktop.server().size())));
        desktop.waitForPanels(2 + capture);
        waitForFocus(desktop);
    }
    // It is still the same page.
    desktop.press("e");
    desktop.waitForPanels(4);
    EXPECT_EQ(shown(), 1);
}

TEST_F(EditInEditor, TheProgramEndsInOrderWithTheEditorOpen)
{
    Desktop &desktop = startWithCard();
    openEditor(desktop);
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

} // namespace
} // namespace lumenfold::test
