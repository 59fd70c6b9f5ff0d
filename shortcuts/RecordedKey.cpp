#include "shortcuts/RecordedKey.h"

#include "shortcuts/KeyNames.h"

namespace lumenfold {
namespace {

constexpr std::uint32_t escapeKey = 53;

} // namespace

RecordedKey RecordedKey::of(const KeyEvent &press)
{
    if (press.keyCode == escapeKey) {
        return {.meaning = Meaning::cancel};
    }
    const std::uint32_t modifiers = carbonModifiers(press.flags);
    if (modifiers == 0) {
        return {.meaning = Meaning::refuse};
    }
    const QString display = modifierSymbols(press.flags) + keyLabel(press.keyCode, press.charactersIgnoringModifiers);
    return {.meaning = Meaning::record,
            .shortcut = Shortcut{.keyCode = press.keyCode, .carbonModifiers = modifiers, .display = display}};
}

} // namespace lumenfold
