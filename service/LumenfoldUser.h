#pragma once

#include <QString>

#include <optional>

namespace lumenfold {

/// Whose API key it is, as the service says.
struct LumenfoldUser {
    QString email;
    std::optional<QString> firstname = std::nullopt;
    /// A word of the service's own.
    std::optional<QString> tier = std::nullopt;

    friend bool operator==(const LumenfoldUser &, const LumenfoldUser &) = default;
};

} // namespace lumenfold
