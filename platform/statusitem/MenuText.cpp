#include "platform/statusitem/MenuText.h"

#include "platform/keyboard/KeyEvent.h"

#include <algorithm>
#include <array>

namespace lumenfold {
namespace {

/// The longest title that a menu can show on a small screen; e-mail addresses are 254 characters at most.
constexpr qsizetype longestLabel = 256;

struct Modifier {
    std::uint64_t flag;
    QLatin1String text;
    QLatin1String token;
};

constexpr std::array modifiers{
    Modifier{keyFlags::command, QLatin1String("Super"), QLatin1String("Super")},
    Modifier{keyFlags::control, QLatin1String("Ctrl"), QLatin1String("Control")},
    Modifier{keyFlags::option, QLatin1String("Alt"), QLatin1String("Alt")},
    Modifier{keyFlags::shift, QLatin1String("Shift"), QLatin1String("Shift")},
};

struct KeyName {
    char16_t character;
    QLatin1String text;
    /// One that both families of toolkits read: the spelling of "BackSpace" and "space" is the one that also the
    /// stricter of them takes, and "+" and "-" stand for themselves in neither.
    QLatin1String token;
};

constexpr std::array menuKeyNames{
    KeyName{u'\r', QLatin1String("Return"), QLatin1String("Return")},
    KeyName{u'\t', QLatin1String("Tab"), QLatin1String("Tab")},
    KeyName{u' ', QLatin1String("Space"), QLatin1String("space")},
    KeyName{u'\x7f', QLatin1String("Backspace"), QLatin1String("BackSpace")},
    KeyName{u'\x1b', QLatin1String("Esc"), QLatin1String("Escape")},
    KeyName{u'\xF700', QLatin1String("Up"), QLatin1String("Up")},
    KeyName{u'\xF701', QLatin1String("Down"), QLatin1String("Down")},
    KeyName{u'\xF702', QLatin1String("Left"), QLatin1String("Left")},
    KeyName{u'\xF703', QLatin1String("Right"), QLatin1String("Right")},
    KeyName{u'\xF728', QLatin1String("Delete"), QLatin1String("Delete")},
    KeyName{u'-', QLatin1String("-"), QLatin1String("minus")},
    KeyName{u'+', QLatin1String("+"), QLatin1String("plus")},
};

/// Modifiers and key, each by the given field of its entry; empty without a key.
QStringList parts(const MenuItem &item, QLatin1String Modifier::*modifierName, QLatin1String KeyName::*keyName)
{
    if (item.keyEquivalent.isEmpty()) {
        return {};
    }
    QStringList names;
    for (const Modifier &modifier : modifiers) {
        if ((item.keyEquivalentModifierMask & modifier.flag) != 0) {
            names.append(modifier.*modifierName);
        }
    }
    const char16_t key = item.keyEquivalent.front().unicode();
    const auto *const named = std::ranges::find(menuKeyNames, key, &KeyName::character);
    names.append(named == menuKeyNames.end() ? item.keyEquivalent.toUpper() : QString(named->*keyName));
    return names;
}

} // namespace

QString shortcutText(const MenuItem &item)
{
    return parts(item, &Modifier::text, &KeyName::text).join(u'+');
}

QStringList shortcutTokens(const MenuItem &item)
{
    return parts(item, &Modifier::token, &KeyName::token);
}

QString plainLabel(const QString &title, QChar mnemonicMark)
{
    QString label = title;
    for (QChar &character : label) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator) {
            character = u' ';
        }
    }
    if (label.size() > longestLabel) {
        constexpr qsizetype half = longestLabel / 2;
        label = label.first(half) + QChar(0x2026) + label.last(half);
    }
    return label.replace(mnemonicMark, QString(2, mnemonicMark));
}

} // namespace lumenfold
