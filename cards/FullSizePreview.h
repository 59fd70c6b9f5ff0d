#pragma once

#include "platform/image/Image.h"

namespace lumenfold {

/// The window that shows one picture large.
class FullSizePreview {
public:
    FullSizePreview() = default;
    FullSizePreview(const FullSizePreview &) = delete;
    FullSizePreview &operator=(const FullSizePreview &) = delete;
    virtual ~FullSizePreview() = default;

    /// Shows the picture instead of the one that is shown now, if any.
    virtual void present(const Image &image) = 0;
};

} // namespace lumenfold
