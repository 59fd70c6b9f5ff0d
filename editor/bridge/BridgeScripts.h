#pragma once

#include <QString>

/// The scripts that are put into every document of the editor's main frame before anything of the page runs.
namespace lumenfold {

/// The messages that a page can send.
inline constexpr QStringView loadedMessageName = u"lumenfoldLoaded";
inline constexpr QStringView imageMessageName = u"lumenfoldImage";

/// Listens to what the page says by window messages, and passes it on. `origin` is the editor's; see editorOrigin().
[[nodiscard]] QString bridgeScript(const QString &origin);

/// Gives a page that is still loading the colours of the window.
[[nodiscard]] QString loadingBackgroundScript();

} // namespace lumenfold
