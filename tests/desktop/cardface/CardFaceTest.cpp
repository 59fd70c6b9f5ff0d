/// What the parts of a card's face do in the shipped program.
#include "tests/desktop/DesktopSetting.h"
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/DesktopTest.h"

#include <QDir>

namespace lumenfold::test {
namespace {

class CardFace : public DesktopSettingTest {
protected:
    /// A desktop with a window that has the keyboard, and one card of it.
    Desktop &startWithCard()
    {
        Desktop &desktop = start(GetParam().options());
        m_background = desktop.paintBackground(knownPicture(cardFriendlyScreen * GetParam().scale));
        m_card = CardColumn{.workArea = desktop.workArea(), .scale = GetParam().scale}.slot(0);
        m_window = &desktop.openWindow({.frame = {pixels(1000), pixels(40), pixels(200), pixels(100)}});
        m_window->focus();
        desktop.pointer().moveTo({pixels(900), pixels(600)});
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        desktop.waitForPanels(1);
        m_window->forgetInput();
        return desktop;
    }

    /// A place of the card's window, in points from its upper left corner.
    [[nodiscard]] QPoint place(int x, int y) const { return m_card.topLeft() + QPoint(pixels(x), pixels(y)); }
    /// On the picture, beside the actions that come with the pointer.
    [[nodiscard]] QPoint besideTheActions() const { return place(37, 50); }

    void click(QPoint where) { m_desktop->pointer().click(where); }
    void doubleClick(QPoint where)
    {
        click(where);
        click(where);
    }
    /// The window of the large picture, while there is one.
    [[nodiscard]] std::optional<QRect> previewWindow() const
    {
        for (const WindowInfo &panel : m_desktop->panels()) {
            if (panel.frame.width() > pixels(700)) {
                return panel.frame;
            }
        }
        return std::nullopt;
    }

    QImage m_background;
    QRect m_card;
    TestWindow *m_window = nullptr;
};

TEST_P(CardFace, ADoubleClickShowsThePictureLargeUntilEscape)
{
    Desktop &desktop = startWithCard();
    doubleClick(besideTheActions());
    ASSERT_TRUE(waitFor([&] { return previewWindow().has_value(); }));
    // 70 % of the work area, in the picture's proportions, with 52 points around it.
    const QRect content = previewWindow()->adjusted(pixels(52), pixels(52), -pixels(52), -pixels(52));
    EXPECT_NEAR(static_cast<double>(content.width()) / content.height(), 1280.0 / 810, 0.01);
    EXPECT_NEAR(content.height(), 0.7 * desktop.workArea().height(), pixels(1));
    EXPECT_TRUE(m_window->hasFocus());

    // Other keys are the front window's all the while; Escape is not, that one time.
    desktop.press("a");
    EXPECT_TRUE(waitFor([&] { return m_window->keyPresses().size() == 1; }));
    desktop.press("Escape");
    EXPECT_TRUE(waitFor([&] { return !previewWindow(); }));
    EXPECT_EQ(m_window->keyPresses().size(), 1);
    EXPECT_TRUE(waitFor([&] { return !desktop.isGrabbed(desktop.keyboard().codeOf("Escape"), 0); }));
    desktop.press("Escape");
    EXPECT_TRUE(waitFor([&] { return m_window->keyPresses().size() == 2; }));
}

TEST_P(CardFace, TheCloseButtonOfTheLargePictureClosesIt)
{
    startWithCard();
    doubleClick(besideTheActions());
    ASSERT_TRUE(waitFor([&] { return previewWindow().has_value(); }));

    click(previewWindow()->topRight() + QPoint(-pixels(42), pixels(42)));
    EXPECT_TRUE(waitFor([&] { return !previewWindow(); }));
}

TEST_P(CardFace, TheCornerButtonsDismissAndPin)
{
    Desktop &desktop = startWithCard();
    // The middle of the pin button is 20 points from the window's corner.
    click(m_card.topRight() + QPoint(-pixels(20), pixels(20)));
    // With the pills, which come with the pointer.
    const auto cardCount = [&](int narrowest) {
        return std::ranges::count_if(desktop.panels(), [&](const WindowInfo &panel) {
            return panel.frame.height() > pixels(60) && panel.frame.width() > narrowest;
        });
    };
    EXPECT_TRUE(waitFor([&] { return cardCount(m_card.width() + pixels(60)) == 1; }));
    EXPECT_EQ(cardCount(0), 2);

    click(place(20, 20));
    EXPECT_TRUE(waitFor([&] { return cardCount(0) == 1; }));
    EXPECT_TRUE(m_window->hasFocus());
}

TEST_P(CardFace, SaveWritesThePictureThatWasTaken)
{
    Desktop &desktop = startWithCard();
    const QImage taken = desktop.clipboardPicture();
    const QPoint save = place(30 + 12 + 30, 30 + (117 - 64) / 2 + 36 + 14);
    desktop.pointer().moveTo(save);
    desktop.waitForStillPicture();
    click(save);

    const QDir folder(desktop.folders().pictures());
    ASSERT_TRUE(waitFor([&] { return folder.entryList({QStringLiteral("LumenFold *.png")}).size() == 1; }));
    const QString file = folder.filePath(folder.entryList({QStringLiteral("LumenFold *.png")}).first());
    EXPECT_TRUE(
        samePicture(QImage(file).convertToFormat(QImage::Format_RGB32), taken.convertToFormat(QImage::Format_RGB32)));
}

TEST_P(CardFace, EditingInTheBrowserWithoutAServiceSaysThatItFailed)
{
    Desktop &desktop = prepare(GetParam().options());
    writeSettings(desktop, "[General]\nLumenFold.editorLocation=browser\n");
    m_card = CardColumn{.workArea = desktop.workArea(), .scale = GetParam().scale}.slot(0);
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForPanels(1);

    desktop.pointer().moveTo(m_card.center());
    desktop.waitForStillPicture();
    click(place(30 + 78, 30 + (117 - 64) / 2 + 16));
    EXPECT_TRUE(waitFor([&] { return desktop.programLog().contains("LumenFold upload error: "); }));
    EXPECT_TRUE(desktop.isProgramRunning());
}

INSTANTIATE_TEST_SUITE_P(On, CardFace, plainAndScaled(), DesktopSetting::nameOf);

} // namespace
} // namespace lumenfold::test
