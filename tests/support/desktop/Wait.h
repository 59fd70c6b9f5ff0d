#pragma once

#include <chrono>
#include <functional>
#include <string_view>

namespace lumenfold::test {

/// Long enough for a busy machine; a wait ends as soon as its condition holds.
inline constexpr std::chrono::milliseconds defaultTimeout{10'000};

/// Runs the present thread's events, where it has any, until the condition holds. False when the time is over first.
[[nodiscard]] bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds timeout = defaultTimeout);

/// The same, but throws std::runtime_error ("waited 10 s for ...") when the time is over.
void waitUntil(std::string_view what, const std::function<bool()> &condition,
               std::chrono::milliseconds timeout = defaultTimeout);

/// True when the condition held during the whole period: for what must not happen.
[[nodiscard]] bool staysTrue(const std::function<bool()> &condition, std::chrono::milliseconds period);

} // namespace lumenfold::test
