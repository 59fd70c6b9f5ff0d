#pragma once

#include <QFuture>
#include <QImage>

namespace lumenfold {

/// The picture with every pixel opaque, format RGB32, made on the thread pool and in place: the pixels must belong to
/// `image` alone.
///
/// What an X server puts into the byte beside the colours is whatever the last program that drew there left in it, and
/// the toolkit copies it into pictures that do have transparency. Touching 33 MB of fresh memory for the first time is
/// too long for the main thread.
[[nodiscard]] QFuture<QImage> madeOpaque(QImage image);

} // namespace lumenfold
