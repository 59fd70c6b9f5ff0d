#pragma once

#include <QImage>

#include <cstddef>
#include <memory>

namespace lumenfold {

/// Zeroed memory that the X server can write into, seen by nobody else and gone with its last user, or a moment later:
/// a thread of the background pool gives it back.
class SharedPixels {
public:
    /// Null when the system refuses.
    [[nodiscard]] static std::unique_ptr<SharedPixels> create(std::size_t bytes);
    ~SharedPixels();
    SharedPixels(const SharedPixels &) = delete;
    SharedPixels &operator=(const SharedPixels &) = delete;

    [[nodiscard]] std::size_t bytes() const { return m_bytes; }

    /// Has the system provide all of the memory now and not when it is first written to. What is in it stays.
    void touch();

    /// The descriptor for the server, once: it is the caller's from now on. -1 the second time.
    [[nodiscard]] int takeDescriptor();

    /// The memory as a picture, not copied; the memory goes with the picture's last copy. `bytesPerLine * height` must
    /// not be more than there is.
    [[nodiscard]] static QImage intoImage(std::unique_ptr<SharedPixels> pixels, QSize size, qsizetype bytesPerLine,
                                          QImage::Format format);

private:
    SharedPixels(void *memory, std::size_t bytes, int descriptor);

    void *m_memory;
    std::size_t m_bytes;
    int m_descriptor;
};

} // namespace lumenfold
