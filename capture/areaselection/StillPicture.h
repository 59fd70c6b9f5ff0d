#pragma once

#include "capture/ScreenCaptureService.h"

#include <QCoroTask>
#include <QImage>

namespace lumenfold {

/// The whole of a screen as it is now, in its device pixels, to stand under the dimming where windows cannot be
/// translucent. Never fails: when no picture can be had, that is logged and the answer is an even grey of a few pixels,
/// over which an area can still be chosen (the capture that follows then tells the user what is wrong).
[[nodiscard]] QCoro::Task<QImage> stillPicture(ScreenCaptureService service, Screen screen);

} // namespace lumenfold
