#pragma once

#include "platform/image/Image.h"

#include <QByteArray>

namespace lumenfold {

/// The picture in these bytes: PNG, JPEG, and WebP where the toolkit reads it. Trusts nothing: what is of another kind,
/// too large, broken or cut short is no picture. Reads all of it, and leaves a thumbnail at hand instead of the pixels;
/// any thread but the main one.
[[nodiscard]] Image readEditedPicture(const QByteArray &bytes);

} // namespace lumenfold
