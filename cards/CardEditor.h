#pragma once

#include "platform/image/Image.h"

#include <QString>

#include <functional>

namespace lumenfold {

/// The editor as the cards know it.
class CardEditor {
public:
    /// Gets the edited picture; may be called never or many times, on the main thread.
    using ExportHandler = std::function<void(const Image &edited)>;

    CardEditor() = default;
    CardEditor(const CardEditor &) = delete;
    CardEditor &operator=(const CardEditor &) = delete;
    virtual ~CardEditor() = default;

    /// Opens the picture. `screenshotId` names it to the editor.
    virtual void present(const Image &image, const QString &screenshotId, ExportHandler onExport) = 0;
};

} // namespace lumenfold
