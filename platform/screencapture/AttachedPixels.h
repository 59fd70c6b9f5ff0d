#pragma once

#include "platform/screencapture/SharedPixels.h"
#include "platform/x11/X11Connection.h"

#include <QImage>
#include <QPointer>

#include <cstdint>
#include <memory>

namespace lumenfold {

/// Memory that the X server has been handed and writes pictures into. Main thread.
class AttachedPixels {
public:
    AttachedPixels(x11::X11Connection &connection, std::unique_ptr<SharedPixels> memory);
    AttachedPixels(const AttachedPixels &) = delete;
    AttachedPixels &operator=(const AttachedPixels &) = delete;
    /// Takes the memory back from the server.
    ~AttachedPixels();

    [[nodiscard]] std::size_t bytes() const { return m_memory->bytes(); }

    /// Asks the server to write this part of the drawable to `offset` bytes from the beginning. The request's number,
    /// for X11Connection::replyLater<xcb_shm_get_image_reply_t>().
    [[nodiscard]] unsigned write(std::uint32_t drawable, QRect part, qsizetype offset) const;

    /// Takes the memory back from the server, once it has written; as in SharedPixels.
    [[nodiscard]] static QImage intoImage(std::unique_ptr<AttachedPixels> pixels, QSize size, qsizetype bytesPerLine,
                                          QImage::Format format);

private:
    void detach();

    QPointer<x11::X11Connection> m_connection;
    std::unique_ptr<SharedPixels> m_memory;
    std::uint32_t m_segment;
};

} // namespace lumenfold
