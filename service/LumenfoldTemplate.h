#pragma once

#include <QString>

#include <optional>

namespace lumenfold {

/// One of the templates that the user has at the service.
struct LumenfoldTemplate {
    /// The service's own; unique in a list.
    QString id;
    QString name;
    /// Where a picture of it can be had; as the service wrote it, so perhaps no address at all.
    std::optional<QString> previewUrl = std::nullopt;
    /// As the service wrote it; such texts sort by time. Never read as a date.
    std::optional<QString> editedAt = std::nullopt;

    friend bool operator==(const LumenfoldTemplate &, const LumenfoldTemplate &) = default;
};

} // namespace lumenfold
