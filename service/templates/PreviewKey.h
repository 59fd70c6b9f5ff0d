#pragma once

#include "service/LumenfoldTemplate.h"

#include <QString>
#include <QUrl>

#include <cstddef>
#include <optional>
#include <tuple>

namespace lumenfold {

/// Names one picture of one template. An edited template has another picture, even at the same address.
struct PreviewKey {
    /// "http" or "https", with a host; without name, password and fragment.
    QString address;
    /// When the template was edited, as the service says it.
    QString version;

    friend bool operator==(const PreviewKey &, const PreviewKey &) = default;
    friend bool operator<(const PreviewKey &one, const PreviewKey &other)
    {
        return std::tie(one.address, one.version) < std::tie(other.address, other.version);
    }
};

[[nodiscard]] std::size_t qHash(const PreviewKey &key, std::size_t seed = 0) noexcept;

/// Nothing when the template has no preview, or one that cannot be had from a server.
[[nodiscard]] std::optional<PreviewKey> previewKey(const LumenfoldTemplate &of);

} // namespace lumenfold
