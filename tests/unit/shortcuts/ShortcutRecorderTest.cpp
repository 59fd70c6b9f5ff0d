#include "shortcuts/ShortcutRecorder.h"

#include "platform/notifications/NotificationCenter.h"
#include "shortcuts/RecordedKey.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lumenfold::test {
namespace {

using Action = ShortcutStore::Action;
using Meaning = RecordedKey::Meaning;

constexpr std::uint32_t keyA = 0;
constexpr std::uint32_t digit1 = 18;
constexpr std::uint32_t digit3 = 20;
constexpr std::uint32_t escape = 53;
constexpr std::uint64_t bothHeld = keyFlags::option | keyFlags::command;

const QString before = QStringLiteral("⌥⌘2");
const QString typing = QStringLiteral("Type shortcut…");
const QString permissionNeeded = QStringLiteral("Permission needed");

TEST(RecordedKeyTest, ACombinationBecomesAShortcutWithTheLabelOfTheUnshiftedKey)
{
    EXPECT_EQ(RecordedKey::of({.keyCode = digit3, .flags = bothHeld}).shortcut,
              (Shortcut{20, 0x0900, QStringLiteral("⌥⌘3")}));
    EXPECT_EQ(RecordedKey::of({.keyCode = digit1, .flags = keyFlags::shift}).shortcut,
              (Shortcut{18, 0x0200, QStringLiteral("⇧1")}));
}

TEST(RecordedKeyTest, WithoutAModifierItIsRefused)
{
    EXPECT_EQ(RecordedKey::of({.keyCode = keyA}).meaning, Meaning::refuse);
    EXPECT_EQ(RecordedKey::of({.keyCode = keyA, .flags = keyFlags::capsLock | keyFlags::numericPad}).meaning,
              Meaning::refuse);
}

TEST(RecordedKeyTest, EscapeCancelsEvenWithModifiers)
{
    EXPECT_EQ(RecordedKey::of({.keyCode = escape}).meaning, Meaning::cancel);
    EXPECT_EQ(RecordedKey::of({.keyCode = escape, .flags = bothHeld}).meaning, Meaning::cancel);
}

class ShortcutRecorderTest : public ::testing::Test {
protected:
    ShortcutRecorderTest()
    {
        QObject::connect(recorder.get(), &ShortcutRecorder::captured,
                         [this](const Shortcut &shortcut) { store.set(shortcut, Action::area); });
        QObject::connect(recorder.get(), &ShortcutRecorder::focusGivenUp, [this] { ++focusGivenUp; });
        recorder->setCurrentDisplay(store.shortcut(Action::area).display);
    }

    FakeKeyEventTapService taps;
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    ShortcutStore store{defaults, notifications};
    FakeAlerts alerts;
    FakeWorkspace workspace;
    /// What was announced of recording.
    std::vector<bool> posted;
    std::unique_ptr<NotificationCenter::Observation> observation =
        notifications.observe(ShortcutStore::recordingNotification, [this](const Notification &notification) {
            posted.push_back(notification.userInfo.value(ShortcutStore::recordingKey).toBool());
        });
    std::unique_ptr<ShortcutRecorder> recorder = std::make_unique<ShortcutRecorder>(
        ShortcutRecorder::Collaborators{.taps = taps, .store = store, .alerts = alerts, .workspace = workspace});
    int focusGivenUp = 0;
};

TEST_F(ShortcutRecorderTest, AClickHoldsTheWholeKeyboardAndSuspendsHotkeys)
{
    EXPECT_EQ(recorder->title(), before);
    EXPECT_EQ(taps.creationAttempts(), 0);
    recorder->startRecording();
    EXPECT_EQ(recorder->title(), typing);
    ASSERT_EQ(taps.openTaps(), 1u);
    EXPECT_EQ(taps.taps().back()->scope, TapScope::wholeKeyboard);
    EXPECT_TRUE(taps.taps().back()->isEnabled);
    EXPECT_EQ(posted, std::vector{true});
}

TEST_F(ShortcutRecorderTest, ACombinationIsStoredAndRecordingEnds)
{
    recorder->startRecording();
    EXPECT_EQ(taps.press(digit3, bothHeld), TapDisposition::swallow);
    EXPECT_EQ(store.shortcut(Action::area), (Shortcut{20, 0x0900, QStringLiteral("⌥⌘3")}));
    EXPECT_EQ(recorder->title(), QStringLiteral("⌥⌘3"));
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(taps.openTaps(), 0u);
    EXPECT_EQ(focusGivenUp, 1);
    EXPECT_EQ(posted, (std::vector{true, false}));
    EXPECT_EQ(store.shortcut(Action::lastArea).display, QStringLiteral("⌥⌘3")) << "both have it now";
}

TEST_F(ShortcutRecorderTest, AKeyAloneBeepsAndRecordingGoesOn)
{
    recorder->startRecording();
    EXPECT_EQ(taps.press(keyA), TapDisposition::swallow);
    EXPECT_EQ(workspace.beeps, 1);
    EXPECT_EQ(recorder->title(), typing);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_TRUE(defaults.writes().isEmpty());
}

TEST_F(ShortcutRecorderTest, EscapeBringsThePreviousTitleBack)
{
    for (const std::uint64_t flags : {std::uint64_t{0}, bothHeld}) {
        recorder->startRecording();
        EXPECT_EQ(taps.press(escape, flags), TapDisposition::swallow);
        EXPECT_EQ(recorder->title(), before);
        EXPECT_FALSE(recorder->isRecording());
        EXPECT_EQ(posted.back(), false);
    }
    EXPECT_TRUE(defaults.writes().isEmpty());
}

TEST_F(ShortcutRecorderTest, LosingTheFocusEndsRecording)
{
    recorder->focusLost();
    EXPECT_TRUE(posted.empty());
    recorder->startRecording();
    recorder->focusLost();
    EXPECT_EQ(recorder->title(), before);
    EXPECT_EQ(taps.openTaps(), 0u);
    EXPECT_EQ(posted, (std::vector{true, false}));
}

TEST_F(ShortcutRecorderTest, ATapThatWasDisabledIsEnabledAgain)
{
    recorder->startRecording();
    taps.disableTaps(KeyEventType::tapDisabledByTimeout);
    EXPECT_TRUE(taps.taps().back()->isEnabled);
    EXPECT_TRUE(recorder->isRecording());
}

TEST_F(ShortcutRecorderTest, KeysThatReachTheButtonCountWhileItRecords)
{
    EXPECT_FALSE(recorder->keyDown({.keyCode = digit3, .flags = bothHeld}));
    recorder->startRecording();
    EXPECT_TRUE(recorder->keyDown({.keyCode = digit1, .flags = keyFlags::shift}));
    EXPECT_EQ(store.shortcut(Action::area).display, QStringLiteral("⇧1"));
}

TEST_F(ShortcutRecorderTest, ADisplaySetMeanwhileIsTheTitleOnlyAfterwards)
{
    recorder->startRecording();
    recorder->setCurrentDisplay(QStringLiteral("⌃A"));
    EXPECT_EQ(recorder->title(), typing);
    recorder->focusLost();
    EXPECT_EQ(recorder->title(), QStringLiteral("⌃A"));
}

TEST_F(ShortcutRecorderTest, WithoutPermissionThereIsOneAlertAndHotkeysStaySuspended)
{
    taps.setAvailable(false);
    recorder->startRecording();
    EXPECT_EQ(recorder->title(), permissionNeeded);
    EXPECT_FALSE(recorder->isRecording());
    ASSERT_EQ(alerts.shown.size(), 1);
    EXPECT_EQ(alerts.shown.at(0).messageText, u"Allow LumenFold to record shortcuts");
    EXPECT_EQ(alerts.shown.at(0).informativeText,
              u"LumenFold needs Accessibility permission only while recording shortcuts to override macOS shortcuts.");
    EXPECT_EQ(alerts.shown.at(0).buttons, QStringList({u"Open System Settings"_qs, u"Not Now"_qs}));
    EXPECT_EQ(posted, (std::vector{false, true}));

    recorder->startRecording();
    EXPECT_EQ(alerts.shown.size(), 1);

    EXPECT_TRUE(alerts.answer(alertFirstButtonReturn + 1));
    EXPECT_TRUE(posted.back());
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
    recorder->focusLost();
    recorder->startRecording();
    EXPECT_EQ(alerts.shown.size(), 2);
    EXPECT_TRUE(alerts.answer(alertFirstButtonReturn));
    EXPECT_EQ(workspace.openedAddresses,
              QList{QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"_qs)});
    EXPECT_EQ(recorder->title(), permissionNeeded);
    recorder->setCurrentDisplay(before);
    EXPECT_EQ(recorder->title(), before);
}

TEST_F(ShortcutRecorderTest, ARecorderThatGoesClosesItsTapAndHearsOfNoAnswer)
{
    recorder->startRecording();
    recorder.reset();
    EXPECT_EQ(taps.openTaps(), 0u);

    taps.setAvailable(false);
    recorder = std::make_unique<ShortcutRecorder>(
        ShortcutRecorder::Collaborators{.taps = taps, .store = store, .alerts = alerts, .workspace = workspace});
    recorder->startRecording();
    recorder.reset();
    EXPECT_TRUE(alerts.answer(alertFirstButtonReturn));
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
}

} // namespace
} // namespace lumenfold::test
