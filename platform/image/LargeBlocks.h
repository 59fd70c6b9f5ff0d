#pragma once

namespace lumenfold {

/// From now on a large block of memory goes back to the system as soon as it is freed.
///
/// The C library keeps larger and larger blocks for itself once such blocks have been freed, up to 32 MiB, so that a
/// program that has captured one desktop would keep the memory of a desktop. Called by the first picture that is made.
void returnLargeBlocksWhenFreed();

} // namespace lumenfold
