#include "platform/screencapture/AttachedPixels.h"

#include <limits>
#include <utility>

#include <xcb/shm.h>

namespace lumenfold {

using x11::X11Connection;

AttachedPixels::AttachedPixels(X11Connection &connection, std::unique_ptr<SharedPixels> memory)
    : m_connection(&connection), m_memory(std::move(memory)), m_segment(xcb_generate_id(connection.xcb()))
{
    constexpr std::uint8_t writable = 0;
    xcb_shm_attach_fd(connection.xcb(), m_segment, m_memory->takeDescriptor(), writable);
}

AttachedPixels::~AttachedPixels()
{
    detach();
}

unsigned AttachedPixels::write(std::uint32_t drawable, QRect part, qsizetype offset) const
{
    constexpr std::uint32_t allPlanes = std::numeric_limits<std::uint32_t>::max();
    return xcb_shm_get_image(m_connection->xcb(), drawable, static_cast<std::int16_t>(part.x()),
                             static_cast<std::int16_t>(part.y()), static_cast<std::uint16_t>(part.width()),
                             static_cast<std::uint16_t>(part.height()), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment,
                             static_cast<std::uint32_t>(offset))
        .sequence;
}

QImage AttachedPixels::intoImage(std::unique_ptr<AttachedPixels> pixels, QSize size, qsizetype bytesPerLine,
                                 QImage::Format format)
{
    pixels->detach();
    return SharedPixels::intoImage(std::move(pixels->m_memory), size, bytesPerLine, format);
}

void AttachedPixels::detach()
{
    if (m_connection && m_segment != XCB_NONE) {
        xcb_shm_detach(m_connection->xcb(), std::exchange(m_segment, XCB_NONE));
        xcb_flush(m_connection->xcb());
    }
}

} // namespace lumenfold
