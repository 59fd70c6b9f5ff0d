#pragma once

class QThreadPool;

namespace lumenfold {

/// The threads that encode pictures, as many as the machine has cores and at least two. They end when there has been
/// nothing to do for a moment, so that a program at rest has none of them. Any thread.
[[nodiscard]] QThreadPool &encodingPool();

/// The same for pictures that are read, so that a new capture does not wait for the pictures of stored cards. Not the
/// toolkit's own pool: the toolkit waits for that one when it paints.
[[nodiscard]] QThreadPool &decodingPool();

} // namespace lumenfold
