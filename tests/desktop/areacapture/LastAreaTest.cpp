/// The last area again.
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class LastArea : public DesktopTest {
protected:
    Desktop &startHere()
    {
        Desktop &desktop = start();
        m_screen = desktop.paintBackground(knownPicture(desktop.server().size()));
        m_wholeScreen = QRect(QPoint(0, 0), desktop.server().size());
        return desktop;
    }

    QImage m_screen;
    QRect m_wholeScreen;
    static constexpr QRect area{400, 100, 300, 200};
};

TEST_F(LastArea, IsCapturedWithoutAsking)
{
    Desktop &desktop = startHere();
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({m_wholeScreen});
    desktop.pointer().drag({400, 100}, {700, 300});
    desktop.waitForClipboard();

    TestWindow &window = desktop.openWindow({.frame = {450, 150, 100, 80}});
    const QImage screen = desktop.waitForStillPicture();
    desktop.press("Super+Alt+3");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), screen.copy(area)));
    EXPECT_FALSE(window.picture().isNull());
    desktop.waitForPanels(2);
}

TEST_F(LastArea, AsksWhenThereIsNone)
{
    Desktop &desktop = startHere();
    desktop.press("Super+Alt+3");
    desktop.waitForOverlays({m_wholeScreen});
    desktop.pointer().drag({400, 100}, {700, 300});
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), m_screen.copy(area)));
}

TEST_F(LastArea, SurvivesARestart)
{
    Desktop &desktop = startHere();
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({m_wholeScreen});
    desktop.pointer().drag({400, 100}, {700, 300});
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});

    desktop.startProgram();
    // Cards of the last run may be back; they are not in pictures.
    desktop.press("Super+Alt+3");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), m_screen.copy(area)));
}

TEST_F(LastArea, ACancelledSelectionLeavesItAlone)
{
    Desktop &desktop = startHere();
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({m_wholeScreen});
    desktop.pointer().drag({400, 100}, {700, 300});
    desktop.waitForClipboard();
    desktop.waitForPanels(1);

    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({m_wholeScreen});
    desktop.press("Escape");
    desktop.waitForOverlays({});
    desktop.waitForPanels(1);
    desktop.press("Super+Alt+3");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), m_screen.copy(area)));
}

} // namespace
} // namespace lumenfold::test
