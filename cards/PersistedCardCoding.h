#pragma once

#include "cards/CardStore.h"

#include <QByteArray>

#include <optional>
#include <vector>

/// The card manifest as text: a JSON array of objects with the keys "id", "editorSourceId", "isPinned" and "frame".
/// What is absent is left out. A frame is [[x, y], [width, height]].
namespace lumenfold {

/// The longest manifest that is read; it holds some 25,000 cards. A longer one was not written by this program, and
/// would take its time and memory.
inline constexpr qsizetype maximumManifestBytes = 4 * 1024 * 1024;

/// Nothing when a frame has a number that JSON cannot say.
[[nodiscard]] std::optional<QByteArray> encodePersistedCards(const std::vector<PersistedCard> &cards);

/// Nothing when any part of it is not as encodePersistedCards() writes it, but for the order of keys, keys of which
/// nothing is known, and a null in place of what may be absent. Takes an id for what it is: any text.
[[nodiscard]] std::optional<std::vector<PersistedCard>> decodePersistedCards(const QByteArray &manifest);

} // namespace lumenfold
