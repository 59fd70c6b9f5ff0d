#pragma once

#include "platform/statusitem/StatusItem.h"

#include <QString>
#include <QStringList>

/// How the texts of a menu are written where the desktop shows it. Pure.
namespace lumenfold {

/// The item's key as the desktop writes it: "Super+Alt+1". Empty without a key.
[[nodiscard]] QString shortcutText(const MenuItem &item);

/// The same for com.canonical.dbusmenu: {"Super", "Alt", "1"}.
[[nodiscard]] QStringList shortcutTokens(const MenuItem &item);

/// The title for a menu in which `mnemonicMark` before a letter makes it a mnemonic: all of it stands as it is. Control
/// characters, which some menus take for columns and lines, become spaces; of a text that no menu can hold the middle
/// is left out.
[[nodiscard]] QString plainLabel(const QString &title, QChar mnemonicMark);

} // namespace lumenfold
