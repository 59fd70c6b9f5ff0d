#pragma once

#include <QString>

#include <optional>

/// How the files of the card folder are named.
namespace lumenfold {

/// Of the list of cards.
inline constexpr QLatin1String manifestFileName("manifest.json");
/// Of the one file that is being written. There is never more than one, so what a kill leaves is replaced by the next.
inline constexpr QLatin1String scratchFileName(".writing.tmp");

/// The image of the card with that id. Nothing for an id that cannot be part of the name of a file in the folder, which
/// may come from a manifest that somebody else wrote: empty, too long, with a slash or a zero in it, or no text.
[[nodiscard]] std::optional<QString> imageFileName(const QString &id);
/// The editor source image of the card with that (screenshot) id.
[[nodiscard]] std::optional<QString> editorSourceImageFileName(const QString &id);

/// True for the name of a file that is some card's image, or was.
[[nodiscard]] bool isImageFileName(const QString &name);

} // namespace lumenfold
