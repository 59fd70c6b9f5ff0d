#include "platform/keyboard/ToolkitKeyEvent.h"

#include "platform/keyboard/KeyPlaces.h"

#include <QKeyEvent>
#include <QKeySequence>

#include <array>
#include <string_view>

namespace lumenfold {
namespace {

/// The first of the keycodes that the server gives out.
constexpr std::uint32_t firstKeycode = 9;

/// What XKB calls the keys of an evdev keyboard, by keycode; empty where there is none that shortcuts use.
constexpr std::array<std::string_view, 127> keyNames{
    // 9 to 36
    "ESC", "AE01", "AE02", "AE03", "AE04", "AE05", "AE06", "AE07", "AE08", "AE09", "AE10", "AE11", "AE12", "BKSP",
    "TAB", "AD01", "AD02", "AD03", "AD04", "AD05", "AD06", "AD07", "AD08", "AD09", "AD10", "AD11", "AD12", "RTRN",
    // 37 to 65
    "LCTL", "AC01", "AC02", "AC03", "AC04", "AC05", "AC06", "AC07", "AC08", "AC09", "AC10", "AC11", "TLDE", "LFSH",
    "BKSL", "AB01", "AB02", "AB03", "AB04", "AB05", "AB06", "AB07", "AB08", "AB09", "AB10", "RTSH", "KPMU", "LALT",
    "SPCE",
    // 66 to 96
    "CAPS", "FK01", "FK02", "FK03", "FK04", "FK05", "FK06", "FK07", "FK08", "FK09", "FK10", "NMLK", "SCLK", "KP7",
    "KP8", "KP9", "KPSU", "KP4", "KP5", "KP6", "KPAD", "KP1", "KP2", "KP3", "KP0", "KPDL", "", "", "LSGT", "FK11",
    "FK12",
    // 97 to 119
    "AB11", "", "", "", "", "", "", "KPEN", "RCTL", "KPDV", "PRSC", "RALT", "", "HOME", "UP", "PGUP", "LEFT", "RGHT",
    "END", "DOWN", "PGDN", "INS", "DELE",
    // 120 to 135
    "", "", "", "", "", "KPEQ", "", "PAUS", "", "", "HNGL", "HJCV", "AE13", "LWIN", "RWIN", "COMP"};

bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
        return true;
    default:
        return false;
    }
}

std::uint64_t flagsOf(Qt::KeyboardModifiers held)
{
    struct Flag {
        Qt::KeyboardModifier modifier;
        std::uint64_t flag;
    };
    static constexpr std::array flags{
        Flag{Qt::ShiftModifier, keyFlags::shift}, Flag{Qt::ControlModifier, keyFlags::control},
        Flag{Qt::AltModifier, keyFlags::option}, Flag{Qt::MetaModifier, keyFlags::command},
        Flag{Qt::KeypadModifier, keyFlags::numericPad}};
    std::uint64_t mask = 0;
    for (const Flag &each : flags) {
        mask |= held.testFlag(each.modifier) ? each.flag : 0;
    }
    return mask;
}

} // namespace

std::optional<KeyEvent> keyEventOf(const QKeyEvent &press)
{
    const std::uint32_t keycode = press.nativeScanCode();
    if (isModifier(press.key()) || keycode < firstKeycode || keycode - firstKeycode >= keyNames.size()) {
        return std::nullopt;
    }
    const std::optional<std::uint32_t> code = virtualKeyCode(keyNames.at(keycode - firstKeycode));
    if (!code) {
        return std::nullopt;
    }
    const QStringView engraved = engravedName(*code);
    const QString name = engraved.isEmpty() ? QKeySequence(press.key()).toString() : engraved.toString();
    return KeyEvent{.type = KeyEventType::keyDown,
                    .keyCode = *code,
                    .flags = flagsOf(press.modifiers()),
                    .isAutorepeat = press.isAutoRepeat(),
                    .charactersIgnoringModifiers = name.isEmpty() ? std::nullopt : std::optional(name)};
}

} // namespace lumenfold
