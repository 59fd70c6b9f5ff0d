#pragma once

#include "platform/statusitem/StatusItem.h"

#include <QImage>
#include <QString>

namespace lumenfold {

/// Where the program has its own drawings for the menu.
[[nodiscard]] QString menuBarImageFolder();

/// The picture of the status item: the program's own drawing in that folder, or scissors if it is not there. A
/// template.
[[nodiscard]] StatusImage menuBarImage(const QString &folder = menuBarImageFolder());

/// The orange dot beside the entry that tells of an update; 14 x 14 points.
[[nodiscard]] QImage updateDotImage();

} // namespace lumenfold
