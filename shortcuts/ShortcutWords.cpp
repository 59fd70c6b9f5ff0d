#include "shortcuts/ShortcutWords.h"

#include "platform/keyboard/KeyEvent.h"

#include <QCoreApplication>
#include <QStringList>

namespace lumenfold {
namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("lumenfold::ShortcutWords", text);
}

/// The display text without the symbols of modifiers.
QString keyIn(const QString &display)
{
    qsizetype start = 0;
    while (start < display.size() - 1 && QStringView(u"⌃⌥⇧⌘").contains(display[start])) {
        ++start;
    }
    return display.sliced(start);
}

} // namespace

QString shortcutInWords(const Shortcut &shortcut)
{
    QStringList words;
    const auto add = [&](std::uint32_t modifier, const char *name) {
        if ((shortcut.carbonModifiers & modifier) != 0) {
            words.append(translated(name));
        }
    };
    add(carbon::controlKey, QT_TRANSLATE_NOOP("lumenfold::ShortcutWords", "Ctrl"));
    add(carbon::optionKey, QT_TRANSLATE_NOOP("lumenfold::ShortcutWords", "Alt"));
    add(carbon::shiftKey, QT_TRANSLATE_NOOP("lumenfold::ShortcutWords", "Shift"));
    add(carbon::cmdKey, QT_TRANSLATE_NOOP("lumenfold::ShortcutWords", "Super"));
    words.append(keyIn(shortcut.display));
    return words.join(u'+');
}

} // namespace lumenfold
