#include "platform/keyboard/x11/KeyboardMap.h"

#include "platform/keyboard/KeyPlaces.h"

#include <QString>
#include <QStringView>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <memory>

namespace lumenfold::x11 {
namespace {

constexpr std::uint16_t realModifiers = 0xff;

xkb_keysym_t unmodifiedSymbol(xkb_keymap *keymap, xkb_keycode_t keycode, xkb_layout_index_t layout)
{
    const xkb_keysym_t *symbols = nullptr;
    return xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, 0, &symbols) == 1 ? symbols[0] : XKB_KEY_NoSymbol;
}

bool isModifierSymbol(xkb_keysym_t symbol)
{
    return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) ||
           (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) || symbol == XKB_KEY_Mode_switch ||
           symbol == XKB_KEY_Num_Lock || symbol == XKB_KEY_Scroll_Lock;
}

/// The bits that stand for a modifier which XKB knows by name only.
std::uint16_t realMask(xkb_keymap *keymap, const char *name)
{
    const xkb_mod_index_t index = xkb_keymap_mod_get_index(keymap, name);
    if (index == XKB_MOD_INVALID) {
        return 0;
    }
    // xkbcommon resolves a named modifier to its bits only as part of a state.
    const std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state(xkb_state_new(keymap), xkb_state_unref);
    xkb_state_update_mask(state.get(), xkb_mod_mask_t{1} << index, 0, 0, 0, 0, 0);
    return static_cast<std::uint16_t>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) & realModifiers);
}

} // namespace

KeyboardMap KeyboardMap::fromKeymap(xkb_keymap *keymap)
{
    KeyboardMap map;
    const xkb_keycode_t first = xkb_keymap_min_keycode(keymap);
    const xkb_keycode_t last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap), map.m_keys.size() - 1);
    for (xkb_keycode_t keycode = first; keycode <= last; ++keycode) {
        const char *name = xkb_keymap_key_get_name(keymap, keycode);
        if (!name) {
            continue;
        }
        Key &key = map.m_keys[keycode];
        key.virtualKeyCode =
            static_cast<std::uint8_t>(lumenfold::virtualKeyCode(name).value_or(std::uint32_t{noVirtualKeyCode}));
        const xkb_layout_index_t layoutsOfKey = xkb_keymap_num_layouts_for_key(keymap, keycode);
        if (layoutsOfKey == 0) {
            continue;
        }
        key.isModifier = isModifierSymbol(unmodifiedSymbol(keymap, keycode, 0));
        for (std::size_t layout = 0; layout < layouts; ++layout) {
            // A key with fewer layouts than the keyboard types in the others what it types in its first.
            const auto index = layout < layoutsOfKey ? static_cast<xkb_layout_index_t>(layout) : 0;
            const char32_t character = xkb_keysym_to_utf32(unmodifiedSymbol(keymap, keycode, index));
            key.characters[layout] = character >= 0x20 && character != 0x7f ? character : 0;
        }
    }
    map.m_optionMask = realMask(keymap, "Alt");
    map.m_commandMask = realMask(keymap, "Super");
    map.m_numLockMask = realMask(keymap, "NumLock");
    map.m_scrollLockMask = realMask(keymap, "ScrollLock");
    return map;
}

KeyGrab KeyboardMap::grabFor(KeyCombination combination) const
{
    std::uint16_t wanted = 0;
    for (const Modifier &modifier : modifiers()) {
        if (combination.carbonModifiers & modifier.carbonBit) {
            if (modifier.mask == 0) {
                return {};
            }
            wanted |= modifier.mask;
        }
    }
    if (combination.keyCode >= noVirtualKeyCode) {
        return {};
    }
    KeyGrab grab;
    for (std::size_t keycode = 0; keycode < m_keys.size(); ++keycode) {
        if (m_keys[keycode].virtualKeyCode == combination.keyCode) {
            grab.keycodes.push_back(static_cast<xcb_keycode_t>(keycode));
        }
    }
    grab.modifierMasks.push_back(wanted);
    for (const std::uint16_t lock : locks()) {
        // The last mask has every lock so far: nothing new in a lock that shares its bit with one of them.
        if ((lock & ~grab.modifierMasks.back()) == 0) {
            continue;
        }
        const std::size_t withoutLock = grab.modifierMasks.size();
        for (std::size_t i = 0; i < withoutLock; ++i) {
            grab.modifierMasks.push_back(static_cast<std::uint16_t>(grab.modifierMasks[i] | lock));
        }
    }
    return grab;
}

std::optional<KeyCombination> KeyboardMap::combination(xcb_keycode_t keycode, std::uint16_t state) const
{
    const std::uint8_t keyCode = m_keys[keycode].virtualKeyCode;
    if (keyCode == noVirtualKeyCode) {
        return std::nullopt;
    }
    KeyCombination combination{.keyCode = keyCode, .carbonModifiers = 0};
    unsigned unexplained = state & realModifiers;
    for (const std::uint16_t lock : locks()) {
        unexplained &= ~unsigned{lock};
    }
    for (const Modifier &modifier : modifiers()) {
        if (state & modifier.mask) {
            combination.carbonModifiers |= modifier.carbonBit;
            unexplained &= ~unsigned{modifier.mask};
        }
    }
    return unexplained == 0 ? std::optional(combination) : std::nullopt;
}

std::optional<KeyEvent> KeyboardMap::keyDown(xcb_keycode_t keycode, std::uint16_t state, std::size_t layout) const
{
    const Key &key = m_keys[keycode];
    if (key.virtualKeyCode == noVirtualKeyCode) {
        return std::nullopt;
    }
    KeyEvent event{.type = KeyEventType::keyDown, .keyCode = key.virtualKeyCode};
    for (const Modifier &modifier : modifiers()) {
        event.flags |= state & modifier.mask ? modifier.flag : 0;
    }
    event.flags |= state & XCB_MOD_MASK_LOCK ? keyFlags::capsLock : 0;
    event.flags |= isOnNumericPad(event.keyCode) ? keyFlags::numericPad : 0;

    const char32_t character = key.characters.at(layout % layouts);
    if (const QStringView engraving = engravedName(event.keyCode); !engraving.isEmpty()) {
        event.charactersIgnoringModifiers = engraving.toString();
    } else if (character != 0) {
        event.charactersIgnoringModifiers = QString::fromUcs4(&character, 1);
    }
    return event;
}

std::array<KeyboardMap::Modifier, 4> KeyboardMap::modifiers() const
{
    return {{{carbon::cmdKey, keyFlags::command, m_commandMask},
             {carbon::shiftKey, keyFlags::shift, XCB_MOD_MASK_SHIFT},
             {carbon::optionKey, keyFlags::option, m_optionMask},
             {carbon::controlKey, keyFlags::control, XCB_MOD_MASK_CONTROL}}};
}

std::array<std::uint16_t, 3> KeyboardMap::locks() const
{
    return {XCB_MOD_MASK_LOCK, m_numLockMask, m_scrollLockMask};
}

} // namespace lumenfold::x11
