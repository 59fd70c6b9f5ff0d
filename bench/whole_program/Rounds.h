#pragma once

namespace lumenfold::bench {

/// The main function of a benchmark whose only argument is how often it measures. Sets up what painting a desktop
/// needs, calls `measure`, and says what went wrong. Returns the exit status.
[[nodiscard]] int measureInRounds(int argc, char **argv, int defaultRounds, void (*measure)(int rounds));

} // namespace lumenfold::bench
