#include "app/menubar/KeyEquivalents.h"

#include "platform/keyboard/KeyEvent.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumenfold {
namespace {

/// By key code; '\0' where the board has no such key, or one that types nothing (10, and 36, which is below).
constexpr std::array<char16_t, 51> letters{
    u'a', u's', u'd',  u'f', u'h', u'g',  u'z', u'x', u'c',  u'v', u'\0', u'b', u'q', u'w', u'e',  u'r', u'y',
    u't', u'1', u'2',  u'3', u'4', u'6',  u'5', u'=', u'9',  u'7', u'-',  u'8', u'0', u']', u'o',  u'u', u'[',
    u'i', u'p', u'\r', u'l', u'j', u'\'', u'k', u';', u'\\', u',', u'/',  u'n', u'm', u'.', u'\t', u' ', u'`',
};

constexpr std::array<std::pair<std::uint32_t, char16_t>, 7> others{{
    {51, u'\x7f'},
    {53, u'\x1b'},
    {117, u'\xF728'},
    {123, u'\xF702'},
    {124, u'\xF703'},
    {125, u'\xF701'},
    {126, u'\xF700'},
}};

} // namespace

QString keyEquivalentForKeyCode(std::uint32_t keyCode)
{
    char16_t character = u'\0';
    if (keyCode < letters.size()) {
        character = letters[keyCode];
    } else if (const auto *found = std::ranges::find(others, keyCode, &decltype(others)::value_type::first);
               found != others.end()) {
        character = found->second;
    }
    return character == u'\0' ? QString() : QString(QChar(character));
}

std::uint64_t modifierMaskForCarbon(std::uint32_t carbonModifiers)
{
    constexpr std::array<std::pair<std::uint32_t, std::uint64_t>, 4> flags{{
        {carbon::cmdKey, keyFlags::command},
        {carbon::optionKey, keyFlags::option},
        {carbon::controlKey, keyFlags::control},
        {carbon::shiftKey, keyFlags::shift},
    }};
    std::uint64_t mask = 0;
    for (const auto &[bit, flag] : flags) {
        mask |= (carbonModifiers & bit) != 0 ? flag : 0;
    }
    return mask;
}

} // namespace lumenfold
