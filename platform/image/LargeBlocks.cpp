#include "platform/image/LargeBlocks.h"

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

namespace lumenfold {

void returnLargeBlocksWhenFreed()
{
#ifdef M_MMAP_THRESHOLD
    // The C library's own first value; to set it is what keeps it from growing.
    constexpr int initialThreshold = 128 * 1024;
    static const int done = mallopt(M_MMAP_THRESHOLD, initialThreshold);
    (void)done;
#endif
}

} // namespace lumenfold
