/// Cards in the hands of somebody who uses neither the pointer nor the picture: what a real accessibility bus tells of
/// them, and what its presses do, while the window in front keeps the keyboard.
#include "tests/desktop/ProgramSettings.h"
#include "tests/desktop/accessibility/AssistiveTechnology.h"
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"

#include <QDir>

#include <algorithm>
#include <memory>

namespace lumenfold::test {
namespace {

const QString window = QStringLiteral("frame");
const QString pushButton = QStringLiteral("push button");
const QString image = QStringLiteral("image");
const QString label = QStringLiteral("label");
const QString press = QStringLiteral("Press");

const QString screenshot = QStringLiteral("Screenshot, 1280 × 810 pixels");
const QString pinnedScreenshot = QStringLiteral("Pinned screenshot, 1280 × 810 pixels");
const QString edit = QStringLiteral("Edit Screenshot");
const QString save = QStringLiteral("Save");
const QString copy = QStringLiteral("Copy");
const QString dismiss = QStringLiteral("Dismiss");
const QString pin = QStringLiteral("Pin as separate card");
const QString bringToFront = QStringLiteral("Bring to front");
const QString collapse = QStringLiteral("Collapse screenshots");
const QString expand = QStringLiteral("Expand screenshots");
const QString clear = QStringLiteral("Clear stacked screenshots");
const QString preview = QStringLiteral("Screenshot preview");
const QString closePreview = QStringLiteral("Close preview");

class Accessibility : public DesktopTest {
protected:
    /// A desktop on which somebody uses an assistive technology, and a window that has the keyboard.
    Desktop &startWithWindow(const QByteArray &settings = {})
    {
        Desktop &desktop = prepare({.size = cardFriendlyScreen});
        if (!settings.isEmpty()) {
            writeSettings(desktop, "[General]\n" + settings);
        }
        m_technology = std::make_unique<AssistiveTechnology>(desktop.environment());
        desktop.startProgram();
        openWindowWithFocus();
        return desktop;
    }

    void openWindowWithFocus()
    {
        m_window = &m_desktop->openWindow({.frame = {1000, 40, 200, 100}});
        m_window->focus();
        m_desktop->pointer().moveTo(awayFromTheCards);
        m_window->forgetInput();
    }

    void capture(int cardsAfterwards)
    {
        const int before = m_desktop->clipboard().ownerChanges();
        const auto isTaken = [&] { return m_desktop->clipboard().ownerChanges() > before; };
        // A program that tells of itself on a busy machine may be too slow to take the key, which the window then gets.
        do {
            m_window->forgetInput();
            m_desktop->press("Super+Alt+1");
        } while (waitFor([&] { return isTaken() || windowGotTheDigit(); }) && !isTaken());
        m_desktop->waitForClipboard();
        m_desktop->waitForPanels(cardsAfterwards);
        // Of the keys for it the window gets Super and Alt.
        m_window->forgetInput();
    }

    [[nodiscard]] QList<AccessibleObject> objects() const
    {
        return m_technology->objectsOf(m_desktop->program().pid());
    }

    [[nodiscard]] bool windowGotTheDigit()
    {
        const QList<TestWindow::KeyPress> presses = m_window->keyPresses();
        return std::ranges::find(presses, m_desktop->keyboard().codeOf("1"), &TestWindow::KeyPress::code) !=
               presses.end();
    }

    /// Seen or not; with any name when none is given.
    [[nodiscard]] QList<AccessibleObject> listed(const QString &role, const QString &name) const
    {
        QList<AccessibleObject> found = objects();
        found.removeIf([&](const AccessibleObject &object) {
            return object.role != role || (!name.isEmpty() && object.name != name);
        });
        return found;
    }

    /// Those that say that they can be seen.
    [[nodiscard]] QList<AccessibleObject> showing(const QString &role, const QString &name) const
    {
        QList<AccessibleObject> found = listed(role, name);
        found.removeIf([&](const AccessibleObject &object) { return !object.isShowing(); });
        return found;
    }

    [[nodiscard]] bool shows(const QString &role, const QString &name, int count = 1) const
    {
        return waitFor([&] { return showing(role, name).size() == count; });
    }

    [[nodiscard]] bool act(const AccessibleObject &object, const QString &action) const
    {
        return m_technology->perform(m_desktop->program().pid(), object, action);
    }

    /// Buttons and pictures that have no name, for people to read.
    [[nodiscard]] QStringList namelessControls() const
    {
        QStringList nameless;
        const QList<AccessibleObject> all = objects();
        for (const AccessibleObject &object : all) {
            const bool isControl =
                object.role == pushButton || object.role == image || object.role == label || !object.actions.isEmpty();
            if (isControl && object.name.trimmed().isEmpty()) {
                nameless.append(object.path + u' ' + object.role);
            }
        }
        return nameless;
    }

    [[nodiscard]] bool keptTheFocus() { return m_window->hasFocus() && m_window->focusLosses() == 0; }

    [[nodiscard]] QRect slot(int number) const { return CardColumn{.workArea = m_desktop->workArea()}.slot(number); }

    static constexpr QPoint awayFromTheCards{900, 600};
    std::unique_ptr<AssistiveTechnology> m_technology;
    TestWindow *m_window = nullptr;
};

TEST_F(Accessibility, AllThatCanBeDoneWithACardHasANameAndARole)
{
    Desktop &desktop = startWithWindow();
    capture(1);
    EXPECT_TRUE(shows(window, QStringLiteral("Screenshot")));
    ASSERT_TRUE(shows(image, screenshot));
    EXPECT_EQ(showing(image, screenshot).first().actions, QStringList({press, edit, save, copy}));
    EXPECT_TRUE(shows(pushButton, dismiss));
    EXPECT_TRUE(shows(pushButton, pin));
    EXPECT_EQ(namelessControls(), QStringList());

    // What comes with the pointer says that it shows when it does.
    for (const QString &name : {edit, save, copy}) {
        EXPECT_TRUE(showing(pushButton, name).isEmpty()) << qPrintable(name);
    }
    desktop.pointer().moveTo(slot(0).center());
    for (const QString &name : {edit, save, copy}) {
        EXPECT_TRUE(shows(pushButton, name)) << qPrintable(name);
    }
    EXPECT_TRUE(shows(pushButton, collapse));
    EXPECT_EQ(namelessControls(), QStringList());
    desktop.pointer().moveTo(awayFromTheCards);
    for (const QString &name : {edit, save, copy, collapse}) {
        EXPECT_TRUE(shows(pushButton, name, 0)) << qPrintable(name);
    }
    // There is nothing to bring to the front.
    EXPECT_TRUE(listed(pushButton, bringToFront).isEmpty());
    EXPECT_TRUE(keptTheFocus());
}

TEST_F(Accessibility, CopyPinAndCloseWorkWithoutPointerAndFocus)
{
    Desktop &desktop = startWithWindow();
    capture(1);
    const QByteArray first = desktop.clipboardPng();
    m_window->moveTo({700, 300});
    capture(2);
    ASSERT_NE(desktop.clipboardPng(), first);

    // By the picture that shows, and by the button that does not.
    ASSERT_TRUE(shows(image, screenshot, 2));
    ASSERT_TRUE(act(showing(image, screenshot).first(), copy));
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.clipboardPng(), first);
    EXPECT_TRUE(shows(label, QStringLiteral("Done")));
    ASSERT_TRUE(act(listed(pushButton, copy).last(), press));
    desktop.waitForClipboard();
    EXPECT_NE(desktop.clipboardPng(), first);

    ASSERT_TRUE(act(showing(pushButton, pin).first(), press));
    EXPECT_TRUE(shows(image, pinnedScreenshot));
    EXPECT_TRUE(shows(window, QStringLiteral("Pinned screenshot")));
    desktop.waitForPanels(3);

    ASSERT_TRUE(act(showing(pushButton, dismiss).first(), press));
    desktop.waitForPanels(2);
    EXPECT_TRUE(shows(image, screenshot, 1));

    // A pinned card can be closed and opened, and nothing else.
    EXPECT_EQ(showing(image, pinnedScreenshot).first().actions, QStringList({press}));
    EXPECT_TRUE(shows(pushButton, dismiss, 2));
    ASSERT_TRUE(act(showing(pushButton, dismiss).last(), press));
    EXPECT_TRUE(shows(image, pinnedScreenshot, 0));
    desktop.waitForPanels(1);
    EXPECT_EQ(namelessControls(), QStringList());
    EXPECT_TRUE(keptTheFocus());
}

TEST_F(Accessibility, SaveWritesTheFile)
{
    Desktop &desktop = startWithWindow("LumenFold.hideCardOnCopyOrSave=true\n");
    capture(1);
    ASSERT_TRUE(shows(image, screenshot));
    ASSERT_TRUE(act(showing(image, screenshot).first(), save));
    const QDir folder(desktop.folders().pictures());
    EXPECT_TRUE(waitFor([&] { return folder.entryList({QStringLiteral("LumenFold *.png")}).size() == 1; }));
    EXPECT_TRUE(shows(image, screenshot, 0));
    desktop.waitForPanels(0);
    EXPECT_TRUE(keptTheFocus());
}

TEST_F(Accessibility, AFailedUploadIsText)
{
    startWithWindow("LumenFold.editorLocation=browser\n");
    capture(1);
    ASSERT_TRUE(shows(image, screenshot));
    EXPECT_TRUE(listed(label, {}).isEmpty());
    ASSERT_TRUE(act(showing(image, screenshot).first(), edit));
    EXPECT_TRUE(shows(label, QStringLiteral("Upload failed")));
    // It is nothing to press.
    EXPECT_TRUE(listed(pushButton, QStringLiteral("Upload failed")).isEmpty());
    EXPECT_EQ(namelessControls(), QStringList());
}

TEST_F(Accessibility, ThePillsFoldAndClearTheColumn)
{
    Desktop &desktop = startWithWindow();
    capture(1);
    capture(2);
    desktop.pointer().moveTo(slot(0).center());
    ASSERT_TRUE(shows(pushButton, clear));
    ASSERT_TRUE(shows(pushButton, collapse));
    ASSERT_TRUE(act(showing(pushButton, collapse).first(), press));
    EXPECT_TRUE(shows(pushButton, expand));
    EXPECT_TRUE(shows(pushButton, clear, 0));

    // The card behind is brought to the front, and offers nothing else; the one in front has nothing to be brought.
    EXPECT_TRUE(shows(pushButton, bringToFront, 1));
    EXPECT_EQ(showing(image, screenshot).first().actions, QStringList({press}));
    ASSERT_TRUE(act(showing(pushButton, bringToFront).first(), press));
    EXPECT_TRUE(shows(pushButton, bringToFront, 1));
    EXPECT_EQ(namelessControls(), QStringList());

    // The pointer is no longer over what the column has become; the pill can be pressed all the same.
    ASSERT_FALSE(listed(pushButton, expand).isEmpty());
    ASSERT_TRUE(act(listed(pushButton, expand).first(), press));
    EXPECT_TRUE(shows(pushButton, bringToFront, 0));
    ASSERT_TRUE(act(listed(pushButton, clear).first(), press));
    EXPECT_TRUE(shows(image, screenshot, 0));
    EXPECT_TRUE(keptTheFocus());
}

TEST_F(Accessibility, TheLargePictureIsOpenedAndClosed)
{
    Desktop &desktop = startWithWindow();
    capture(1);
    ASSERT_TRUE(shows(image, screenshot));
    for (const bool byKeyboard : {false, true}) {
        ASSERT_TRUE(act(showing(image, screenshot).first(), press));
        EXPECT_TRUE(shows(window, preview));
        EXPECT_TRUE(shows(image, preview));
        ASSERT_TRUE(shows(pushButton, closePreview));
        EXPECT_EQ(namelessControls(), QStringList());
        if (byKeyboard) {
            desktop.press("Escape");
        } else {
            ASSERT_TRUE(act(showing(pushButton, closePreview).first(), press));
        }
        EXPECT_TRUE(shows(image, preview, 0));
        desktop.waitForPanels(1);
    }
    // The key was the preview's.
    EXPECT_TRUE(m_window->keyPresses().isEmpty());
    EXPECT_TRUE(keptTheFocus());
}

TEST_F(Accessibility, ATechnologyThatComesLaterFindsTheCardsToo)
{
    Desktop &desktop = start({.size = cardFriendlyScreen});
    openWindowWithFocus();
    capture(1);
    m_technology = std::make_unique<AssistiveTechnology>(desktop.environment());
    ASSERT_TRUE(shows(pushButton, dismiss));
    ASSERT_TRUE(act(showing(pushButton, dismiss).first(), press));
    desktop.waitForPanels(0);
    EXPECT_TRUE(keptTheFocus());
}

} // namespace
} // namespace lumenfold::test
