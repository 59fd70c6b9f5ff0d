#pragma once

#include "platform/image/Image.h"

#include <QByteArray>

namespace lumenfold {

/// The general pasteboard (the clipboard). Main thread. What is put on it stays there after the program ends wherever
/// the desktop has somebody to hand it to.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard &) = delete;
    Pasteboard &operator=(const Pasteboard &) = delete;
    virtual ~Pasteboard() = default;

    /// Begins a new set of contents and forgets the old one.
    virtual void clearContents() = 0;

    /// Adds the image itself. It is handed over in the platform's exchange format for pictures, whose bytes the image
    /// already has or is making: nothing is encoded here.
    virtual void writeImage(const Image &image) = 0;

    /// Adds ready PNG bytes.
    virtual void setPngData(const QByteArray &png) = 0;
};

} // namespace lumenfold
