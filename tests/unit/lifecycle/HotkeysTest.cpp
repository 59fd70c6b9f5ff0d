#include "tests/unit/lifecycle/AppDelegateFixture.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

/// What is bound when, and what each hotkey does.
using HotkeysTest = AppDelegateFixture;

TEST_F(HotkeysTest, TheThreeCapturesAreBoundInTheirOrder)
{
    launch();
    ASSERT_EQ(hotKeys.registrationAttempts().size(), 3U);
    EXPECT_EQ(hotKeys.registrationAttempts()[0].keyCode, 18U);
    EXPECT_EQ(hotKeys.registrationAttempts()[1].keyCode, 19U);
    EXPECT_EQ(hotKeys.registrationAttempts()[2].keyCode, 20U);
    EXPECT_EQ(bound(), captures);
}

TEST_F(HotkeysTest, EachHotkeyRunsItsCapture)
{
    launch();
    press(fullScreen.first);
    queue.advance(60ms);
    ASSERT_EQ(screenshots.captures.size(), 1U);
    EXPECT_FALSE(screenshots.captures[0].configuration.sourceRect);
    EXPECT_EQ(pasteboard.images.size(), 1U);

    // The selector covers the one screen until it is cancelled.
    const std::size_t cardsOnly = panels.panels().size();
    press(area.first);
    EXPECT_EQ(panels.panels().size(), cardsOnly + 1);
    EXPECT_TRUE(panels.lastPanel()->isVisible());
}

TEST_F(HotkeysTest, TheLastAreaIsTakenAgain)
{
    defaults.setRaw(QStringLiteral("LumenFold.lastAreaRect"), std::vector<double>{10, 20, 300, 200});
    launch();
    press(lastArea.first);
    queue.advance(60ms);
    ASSERT_EQ(screenshots.captures.size(), 1U);
    EXPECT_EQ(screenshots.captures[0].configuration.width, 300);
    EXPECT_EQ(screenshots.captures[0].configuration.height, 200);
}

TEST_F(HotkeysTest, ChosenShortcutsAreBoundInPlaceOfTheDefaults)
{
    shortcuts.set({.keyCode = 0, .carbonModifiers = 0x1000, .display = QStringLiteral("⌃A")},
                  ShortcutStore::Action::area);
    launch();
    EXPECT_EQ(bound(), (Bound{fullScreen, {0, 0x1000}, lastArea}));
}

TEST_F(HotkeysTest, UndoIsBoundExactlyWhileThereIsSomethingToUndo)
{
    launch();
    reportUndo(false);
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 3U);

    reportUndo(true);
    reportUndo(true);
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 4U);
    EXPECT_EQ(bound(), capturesAndUndo);

    reportUndo(false);
    EXPECT_EQ(bound(), captures);
    reportUndo(false);
    EXPECT_EQ(bound(), captures);

    reportUndo(true);
    EXPECT_EQ(bound(), capturesAndUndo);
}

TEST_F(HotkeysTest, AChangedShortcutBindsEverythingAnewUndoIncluded)
{
    launch();
    reportUndo(true);
    const std::uint32_t firstId = idOf(undo.first);
    shortcuts.set({.keyCode = 7, .carbonModifiers = 0x0100, .display = QStringLiteral("⌘X")},
                  ShortcutStore::Action::undo);
    EXPECT_EQ(bound(), (Bound{fullScreen, area, lastArea, {7, 0x0100}}));
    EXPECT_GT(idOf(7), firstId);

    // The new id is the one that goes when undo is over.
    reportUndo(false);
    EXPECT_EQ(bound(), captures);
}

TEST_F(HotkeysTest, WhileAShortcutIsRecordedNothingIsBound)
{
    launch();
    reportUndo(true);
    shortcuts.postRecording(true);
    EXPECT_THAT(bound(), IsEmpty());
    EXPECT_EQ(taps.openTaps(), 0U);
    shortcuts.postRecording(false);
    EXPECT_EQ(bound(), capturesAndUndo);
}

TEST_F(HotkeysTest, UndoThatEndsDuringARecordingStaysUnbound)
{
    launch();
    reportUndo(true);
    shortcuts.postRecording(true);
    reportUndo(false);
    shortcuts.postRecording(false);
    EXPECT_EQ(bound(), captures);
}

TEST_F(HotkeysTest, ARecordingNotificationThatDoesNotSayTrueMeansFalse)
{
    launch();
    const std::uint32_t before = idOf(fullScreen.first);
    for (const QVariantMap &userInfo :
         {QVariantMap(), QVariantMap{{QStringLiteral("recording"), QStringLiteral("true")}},
          QVariantMap{{QStringLiteral("recording"), 1}}, QVariantMap{{QStringLiteral("Recording"), true}}}) {
        notifications.post(ShortcutStore::recordingNotification, nullptr, userInfo);
        EXPECT_EQ(bound(), captures);
    }
    // Bound anew each time.
    EXPECT_EQ(idOf(fullScreen.first), before + 4 * 3);
}

} // namespace
} // namespace lumenfold::test
