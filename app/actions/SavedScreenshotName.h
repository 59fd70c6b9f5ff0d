#pragma once

#include <QDateTime>
#include <QString>

namespace lumenfold {

/// The file name of a screenshot saved at `time`: "LumenFold 2026-11-15 at 02.49.30.png", in local time, on the 24-hour
/// clock, with ASCII digits in every language. Two screenshots of the same second have the same name.
[[nodiscard]] QString savedScreenshotName(const QDateTime &time);

} // namespace lumenfold
