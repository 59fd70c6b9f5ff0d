#include "shortcuts/KeyNames.h"

#include "platform/keyboard/KeyEvent.h"

#include <algorithm>
#include <array>

namespace lumenfold {
namespace {

struct ModifierName {
    std::uint64_t flag;
    std::uint32_t carbonBit;
    char16_t symbol;
};

constexpr std::array modifiers{
    ModifierName{keyFlags::control, carbon::controlKey, u'⌃'},
    ModifierName{keyFlags::option, carbon::optionKey, u'⌥'},
    ModifierName{keyFlags::shift, carbon::shiftKey, u'⇧'},
    ModifierName{keyFlags::command, carbon::cmdKey, u'⌘'},
};

struct KeyName {
    std::uint32_t keyCode;
    QStringView label;
};

constexpr std::array keyNames{
    KeyName{18, u"1"},  KeyName{19, u"2"},  KeyName{20, u"3"},     KeyName{21, u"4"},  KeyName{22, u"6"},
    KeyName{23, u"5"},  KeyName{24, u"="},  KeyName{25, u"9"},     KeyName{26, u"7"},  KeyName{27, u"-"},
    KeyName{28, u"8"},  KeyName{29, u"0"},  KeyName{30, u"]"},     KeyName{33, u"["},  KeyName{36, u"↩"},
    KeyName{39, u"'"},  KeyName{41, u";"},  KeyName{42, u"\\"},    KeyName{43, u","},  KeyName{44, u"/"},
    KeyName{47, u"."},  KeyName{48, u"⇥"},  KeyName{49, u"Space"}, KeyName{50, u"`"},  KeyName{51, u"⌫"},
    KeyName{53, u"⎋"},  KeyName{117, u"⌦"}, KeyName{123, u"←"},    KeyName{124, u"→"}, KeyName{125, u"↓"},
    KeyName{126, u"↑"},
};

} // namespace

std::uint32_t carbonModifiers(std::uint64_t flags)
{
    std::uint32_t mask = 0;
    for (const ModifierName &modifier : modifiers) {
        if (flags & modifier.flag) {
            mask |= modifier.carbonBit;
        }
    }
    return mask;
}

QString modifierSymbols(std::uint64_t flags)
{
    QString symbols;
    for (const ModifierName &modifier : modifiers) {
        if (flags & modifier.flag) {
            symbols.append(QChar(modifier.symbol));
        }
    }
    return symbols;
}

QString keyLabel(std::uint32_t keyCode, const std::optional<QString> &charactersIgnoringModifiers)
{
    const auto *named = std::ranges::find(keyNames, keyCode, &KeyName::keyCode);
    if (named != keyNames.end()) {
        return named->label.toString();
    }
    return charactersIgnoringModifiers ? charactersIgnoringModifiers->toUpper() : QStringLiteral("?");
}

} // namespace lumenfold
