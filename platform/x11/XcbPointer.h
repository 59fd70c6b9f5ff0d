#pragma once

#include <cstdlib>
#include <memory>

namespace lumenfold::x11 {

struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};

/// Owns what xcb allocated with malloc: replies, errors, events.
template <typename T>
using XcbPointer = std::unique_ptr<T, FreeDeleter>;

} // namespace lumenfold::x11
