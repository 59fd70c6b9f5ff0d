#pragma once

#include <QFuture>
#include <QImage>

#include <functional>

class QThreadPool;

namespace lumenfold {

/// The threads that encode pictures, as many as the machine has cores and at least two. They end when there has been
/// nothing to do for a moment, so that a program at rest has none of them. Any thread.
[[nodiscard]] QThreadPool &encodingPool();

/// As many for what is slow and not urgent: reading and scaling stored pictures, writing files. A new capture does not
/// wait for them. Long work belongs here and not into the toolkit's own pool, which the toolkit waits for when it
/// paints. Any thread.
[[nodiscard]] QThreadPool &backgroundPool();

/// Calls `make` on a thread of the pool; what it returns is the future's result. Any thread.
[[nodiscard]] QFuture<QImage> makePicture(QThreadPool &pool, std::function<QImage()> make);

} // namespace lumenfold
