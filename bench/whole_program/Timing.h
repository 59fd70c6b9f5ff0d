#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace lumenfold::bench {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// What repeated measuring gave. Not empty.
struct Samples {
    std::vector<Milliseconds> values;

    [[nodiscard]] Milliseconds median() const
    {
        std::vector<Milliseconds> sorted = values;
        std::sort(sorted.begin(), sorted.end());
        const std::size_t middle = sorted.size() / 2;
        return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
    }
    [[nodiscard]] Milliseconds slowest() const { return *std::max_element(values.begin(), values.end()); }
};

} // namespace lumenfold::bench
