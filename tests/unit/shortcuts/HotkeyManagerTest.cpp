#include "shortcuts/HotkeyManager.h"

#include "platform/keyboard/KeyEvent.h"
#include "tests/support/fakes/FakeHotKeyService.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/unit/LogWatch.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace lumenfold::test {
namespace {

constexpr std::uint32_t key1 = 18;
constexpr std::uint32_t key2 = 19;
constexpr std::uint32_t optionCommand = carbon::optionKey | carbon::cmdKey;
constexpr std::uint64_t optionCommandFlags = keyFlags::option | keyFlags::command;
constexpr std::uint32_t signature = 0x4C4D4644;

const QString tapUnavailable =
    QStringLiteral("LumenFold: keyboard event tap unavailable; using Carbon hotkey fallback.");

class HotkeyManagerTest : public ::testing::Test {
protected:
    /// An action that counts how often it ran.
    static HotkeyManager::Action counting(int &runs)
    {
        return [&runs] { ++runs; };
    }

    /// Presses at the tap and lets the main queue run.
    TapDisposition pressAtTap(std::uint32_t keyCode, std::uint64_t flags)
    {
        const TapDisposition disposition = m_taps.press(keyCode, flags);
        m_queue.runPosted();
        return disposition;
    }

    FakeKeyEventTapService m_taps;
    FakeHotKeyService m_hotKeys;
    FakeMainQueue m_queue;
    std::unique_ptr<HotkeyManager> m_manager = std::make_unique<HotkeyManager>(m_taps, m_hotKeys, m_queue);
    int m_runs = 0;
};

TEST_F(HotkeyManagerTest, InstallsThePressHandlerOnceAndMakesNoTapAtFirst)
{
    EXPECT_EQ(m_hotKeys.handlerInstallations(), 1);
    EXPECT_EQ(m_taps.creationAttempts(), 0);
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager->unregisterAll();
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(m_hotKeys.handlerInstallations(), 1);
}

TEST_F(HotkeyManagerTest, IdsAreNeverUsedAgain)
{
    EXPECT_EQ(m_manager->registerHotkey(key1, optionCommand, {}), 1u);
    EXPECT_EQ(m_manager->registerHotkey(key2, optionCommand, {}), 2u);
    m_manager->unregisterAll();
    EXPECT_EQ(m_manager->registerHotkey(key1, optionCommand, {}), 3u);
    m_manager->unregister(3);
    EXPECT_EQ(m_manager->registerHotkey(key1, optionCommand, {}), 4u);
}

TEST_F(HotkeyManagerTest, RegistersAPlatformHotkeyForEach)
{
    m_manager->registerHotkey(key1, optionCommand, {});
    m_manager->registerHotkey(6, carbon::cmdKey, {});
    const std::vector<FakeHotKeyService::HotKey> expected{{key1, optionCommand, {signature, 1}},
                                                          {6, carbon::cmdKey, {signature, 2}}};
    EXPECT_EQ(m_hotKeys.registered(), expected);
}

TEST_F(HotkeyManagerTest, AllShareOneTapThatIsEnabled)
{
    m_manager->registerHotkey(key1, optionCommand, {});
    m_manager->registerHotkey(key2, optionCommand, {});
    ASSERT_EQ(m_taps.taps().size(), 1u);
    EXPECT_EQ(m_taps.taps()[0]->scope, TapScope::hotKeys);
    EXPECT_TRUE(m_taps.taps()[0]->isEnabled);
}

TEST_F(HotkeyManagerTest, ABoundKeyIsSwallowedAndRunsItsActionOnce)
{
    int otherRuns = 0;
    m_manager->registerHotkey(key2, optionCommand, counting(otherRuns));
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 1);
    EXPECT_EQ(otherRuns, 0);
}

TEST_F(HotkeyManagerTest, ActionsNeverRunInsideTheTap)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_taps.press(key1, optionCommandFlags);
    EXPECT_EQ(m_runs, 0);
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, OtherModifiersArePassedOnUntouched)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags | keyFlags::shift), TapDisposition::passOn);
    EXPECT_EQ(pressAtTap(key1, keyFlags::option), TapDisposition::passOn);
    EXPECT_EQ(pressAtTap(key1, 0), TapDisposition::passOn);
    EXPECT_EQ(pressAtTap(key2, optionCommandFlags), TapDisposition::passOn);
    EXPECT_EQ(m_runs, 0);
    EXPECT_EQ(m_queue.pendingCount(), 0u);
}

TEST_F(HotkeyManagerTest, LocksAndOtherFlagsDoNotMatter)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags | keyFlags::capsLock), TapDisposition::swallow);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags | keyFlags::numericPad | 0x100), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 2);
}

TEST_F(HotkeyManagerTest, AKeyWithoutModifiersCanBeBound)
{
    m_manager->registerHotkey(key1, 0, counting(m_runs));
    EXPECT_EQ(pressAtTap(key1, 0), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, OneOfTwoEqualBindingsRuns)
{
    int otherRuns = 0;
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager->registerHotkey(key1, optionCommand, counting(otherRuns));
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(m_runs + otherRuns, 1);
}

TEST_F(HotkeyManagerTest, AutorepeatIsPassedOnAndRunsNothing)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    const KeyEvent repeat{.keyCode = key1, .flags = optionCommandFlags, .isAutorepeat = true};
    EXPECT_EQ(m_taps.send(repeat), TapDisposition::passOn);
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(HotkeyManagerTest, OtherEventsArePassedOn)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    const KeyEvent release{.type = KeyEventType::keyUp, .keyCode = key1, .flags = optionCommandFlags};
    EXPECT_EQ(m_taps.send(release), TapDisposition::passOn);
    EXPECT_EQ(m_queue.pendingCount(), 0u);
}

TEST_F(HotkeyManagerTest, ADisabledTapIsEnabledAgain)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_taps.disableTaps(KeyEventType::tapDisabledByTimeout);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    m_taps.disableTaps(KeyEventType::tapDisabledByUserInput);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 2);
    EXPECT_EQ(m_taps.creationAttempts(), 1);
}

TEST_F(HotkeyManagerTest, WithoutTapEveryRegistrationTriesAgainAndSaysSo)
{
    m_taps.setAvailable(false);
    expectLogLine(tapUnavailable, 2);
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager->registerHotkey(key2, optionCommand, counting(m_runs));
    EXPECT_EQ(m_taps.creationAttempts(), 2);
    EXPECT_EQ(m_hotKeys.registered().size(), 2u);

    m_taps.setAvailable(true);
    m_manager->registerHotkey(6, carbon::cmdKey, {});
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow) << "the late tap serves the earlier ones";
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, ThePlatformHotkeyAloneIsEnough)
{
    m_taps.setAvailable(false);
    expectLogLine(tapUnavailable);
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(m_hotKeys.press({signature, id}), noHotKeyError);
    EXPECT_EQ(m_runs, 0) << "never inside the platform's callback";
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, ARefusedHotkeyIsLoggedAndServedByTheTap)
{
    m_hotKeys.refuse(key1, optionCommand, hotKeyExistsError);
    expectLogLine(QStringLiteral("LumenFold: failed to register hotkey 18/2304: -9878"));
    EXPECT_EQ(m_manager->registerHotkey(key1, optionCommand, counting(m_runs)), 1u);
    EXPECT_TRUE(m_hotKeys.registered().empty());
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, WithNeitherAnIdIsGivenAllTheSame)
{
    m_taps.setAvailable(false);
    m_hotKeys.refuse(6, carbon::cmdKey, hotKeyInvalidError);
    expectLogLine(tapUnavailable);
    expectLogLine(QStringLiteral("LumenFold: failed to register hotkey 6/256: -9879"));
    EXPECT_EQ(m_manager->registerHotkey(6, carbon::cmdKey, counting(m_runs)), 1u);
    m_manager->unregister(1);
}

TEST_F(HotkeyManagerTest, EachPathThatSeesAPressRunsTheAction)
{
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_taps.press(key1, optionCommandFlags);
    m_hotKeys.press({signature, id});
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 2);
}

TEST_F(HotkeyManagerTest, TheSignatureOfAPressIsNotLookedAt)
{
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_hotKeys.press({0, id});
    m_hotKeys.press({signature, id + 1});
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, UnregisteringTheLastBindingRemovesTheTap)
{
    const std::uint32_t first = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    const std::uint32_t second = m_manager->registerHotkey(key2, optionCommand, counting(m_runs));
    m_manager->unregister(first);
    EXPECT_EQ(m_taps.openTaps(), 1u);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::passOn);
    m_manager->unregister(second);
    EXPECT_EQ(m_taps.openTaps(), 0u);
    EXPECT_TRUE(m_hotKeys.registered().empty());

    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    EXPECT_EQ(m_taps.openTaps(), 1u);
    EXPECT_EQ(m_taps.creationAttempts(), 2);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
}

TEST_F(HotkeyManagerTest, AnUnknownIdChangesNothing)
{
    m_manager->unregister(7);
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager->unregister(7);
    EXPECT_EQ(m_taps.openTaps(), 1u);
    EXPECT_EQ(m_hotKeys.registered().size(), 1u);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
}

TEST_F(HotkeyManagerTest, UnregisterAllRemovesEverything)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager->registerHotkey(key2, optionCommand, counting(m_runs));
    m_manager->unregisterAll();
    EXPECT_EQ(m_taps.openTaps(), 0u);
    EXPECT_TRUE(m_hotKeys.registered().empty());
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::passOn);
    EXPECT_EQ(m_runs, 0);
}

TEST_F(HotkeyManagerTest, AnActionUnregisteredBeforeItsTurnDoesNotRun)
{
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_taps.press(key1, optionCommandFlags);
    m_hotKeys.press({signature, id});
    m_manager->unregister(id);
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(HotkeyManagerTest, AnActionMayUnregisterItselfAndRegisterOthers)
{
    m_manager->registerHotkey(key1, optionCommand, [this] {
        m_manager->unregisterAll();
        m_manager->registerHotkey(key2, optionCommand, counting(m_runs));
    });
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(pressAtTap(key1, optionCommandFlags), TapDisposition::passOn);
    EXPECT_EQ(pressAtTap(key2, optionCommandFlags), TapDisposition::swallow);
    EXPECT_EQ(m_runs, 1);
}

TEST_F(HotkeyManagerTest, AnActionMayDestroyTheManager)
{
    m_manager->registerHotkey(key1, optionCommand, [this, alive = std::make_shared<int>(41)] {
        m_manager.reset();
        m_runs = *alive + 1;
    });
    pressAtTap(key1, optionCommandFlags);
    EXPECT_EQ(m_runs, 42);
    EXPECT_EQ(m_taps.openTaps(), 0u);
}

TEST_F(HotkeyManagerTest, ReleasingTheManagerReleasesTapAndHotkeys)
{
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_manager.reset();
    EXPECT_EQ(m_taps.openTaps(), 0u);
    EXPECT_TRUE(m_hotKeys.registered().empty());
    EXPECT_EQ(m_hotKeys.press({signature, id}), noHotKeyError) << "the handler stays installed and does nothing";
    EXPECT_EQ(m_queue.pendingCount(), 0u);
}

TEST_F(HotkeyManagerTest, APressAtTheTapDoesNotOutliveTheManager)
{
    m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_taps.press(key1, optionCommandFlags);
    m_manager.reset();
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(HotkeyManagerTest, APressOfAPlatformHotkeyKeepsTheManagerUntilItHasRun)
{
    const std::uint32_t id = m_manager->registerHotkey(key1, optionCommand, counting(m_runs));
    m_hotKeys.press({signature, id});
    m_manager.reset();
    EXPECT_EQ(m_hotKeys.registered().size(), 1u);
    m_queue.runPosted();
    EXPECT_EQ(m_runs, 1);
    EXPECT_TRUE(m_hotKeys.registered().empty());
    EXPECT_EQ(m_taps.openTaps(), 0u);
}

} // namespace
} // namespace lumenfold::test
