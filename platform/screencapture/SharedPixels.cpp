#include "platform/screencapture/SharedPixels.h"

#include "platform/image/EncodingPool.h"

#include <QThreadPool>

#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace lumenfold {

std::unique_ptr<SharedPixels> SharedPixels::create(std::size_t bytes)
{
    const int descriptor = memfd_create("LumenFold picture", MFD_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    void *memory = ftruncate(descriptor, static_cast<off_t>(bytes)) == 0
                       ? mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)
                       : MAP_FAILED;
    if (memory == MAP_FAILED) {
        close(descriptor);
        return nullptr;
    }
    return std::unique_ptr<SharedPixels>(new SharedPixels(memory, bytes, descriptor));
}

SharedPixels::SharedPixels(void *memory, std::size_t bytes, int descriptor)
    : m_memory(memory), m_bytes(bytes), m_descriptor(descriptor)
{
}

SharedPixels::~SharedPixels()
{
    // It takes the system five milliseconds and more to take this much back, wherever it happens; often that would be
    // on the main thread, while the cards come back and the clipboard is asked for.
    backgroundPool().start([memory = m_memory, bytes = m_bytes, descriptor = m_descriptor] {
        munmap(memory, bytes);
        if (descriptor >= 0) {
            close(descriptor);
        }
    });
}

void SharedPixels::touch()
{
#ifdef MADV_POPULATE_WRITE
    if (madvise(m_memory, m_bytes, MADV_POPULATE_WRITE) == 0) {
        return;
    }
#endif
    // Kernels before 5.14.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    auto *bytes = static_cast<volatile unsigned char *>(m_memory);
    for (std::size_t place = 0; place < m_bytes; place += page) {
        bytes[place] = bytes[place];
    }
}

int SharedPixels::takeDescriptor()
{
    return std::exchange(m_descriptor, -1);
}

QImage SharedPixels::intoImage(std::unique_ptr<SharedPixels> pixels, QSize size, qsizetype bytesPerLine,
                               QImage::Format format)
{
    auto *owned = pixels.release();
    return {static_cast<uchar *>(owned->m_memory),
            size.width(),
            size.height(),
            bytesPerLine,
            format,
            [](void *memory) { delete static_cast<SharedPixels *>(memory); },
            owned};
}

} // namespace lumenfold
