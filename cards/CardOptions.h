#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"

#include <QString>

#include <optional>

namespace lumenfold {

/// Whether a card is kept for the next run of the program.
enum class Persist { no, yes };

/// What may be said about a new stack card beside its image.
struct ShowOptions {
    /// The image handed to the editor; the image itself when absent.
    std::optional<Image> editorSourceImage;
    /// The screenshot id when absent.
    std::optional<QString> editorSourceId;
    /// A fresh one when absent.
    std::optional<QString> id;
    Persist persist = Persist::yes;
};

/// The same for a new pinned card.
struct PinnedCardOptions {
    std::optional<Image> editorSourceImage;
    std::optional<QString> editorSourceId;
    /// The panel's frame in global points, its hit margin included. Absent: twice the size of a stack card, centred on
    /// the main screen.
    std::optional<Rect> frame;
    std::optional<QString> id;
    Persist persist = Persist::yes;
};

} // namespace lumenfold
