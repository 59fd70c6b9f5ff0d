#include "platform/screencapture/X11PixelReader.h"

#include "platform/image/EncodingPool.h"

#include <QCoroFuture>
#include <QSysInfo>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <xcb/shm.h>

namespace lumenfold {
namespace {

using namespace x11;
using namespace Qt::StringLiterals;

constexpr std::uint32_t allPlanes = std::numeric_limits<std::uint32_t>::max();

/// Large enough that the requests do not count, small enough that copying one band does not hold up the event loop.
constexpr qsizetype bytesPerBand = 4 * 1024 * 1024;

const xcb_visualtype_t *rootVisual(const xcb_screen_t &screen)
{
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == screen.root_visual) {
                return visual.data;
            }
        }
    }
    return nullptr;
}

QImage::Format formatOf(int depth, int bitsPerPixel, const xcb_visualtype_t &visual)
{
    struct Known {
        int depth;
        int bitsPerPixel;
        std::uint32_t red;
        std::uint32_t blue;
        QImage::Format format;
    };
    static constexpr std::array known{
        Known{24, 32, 0xff0000, 0x0000ff, QImage::Format_RGB32},
        Known{30, 32, 0x3ff00000, 0x000003ff, QImage::Format_RGB30},
        Known{30, 32, 0x000003ff, 0x3ff00000, QImage::Format_BGR30},
        Known{16, 16, 0xf800, 0x001f, QImage::Format_RGB16},
    };
    const auto *found = std::ranges::find_if(known, [&](const Known &layout) {
        return layout.depth == depth && layout.bitsPerPixel == bitsPerPixel && layout.red == visual.red_mask &&
               layout.blue == visual.blue_mask;
    });
    return found == known.end() ? QImage::Format_Invalid : found->format;
}

/// Descriptors travel through Unix sockets only; a forwarded display comes by TCP.
bool isLocal(const X11Connection &connection)
{
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    return getsockname(xcb_get_file_descriptor(connection.xcb()), reinterpret_cast<sockaddr *>(&address), &length) ==
               0 &&
           address.ss_family == AF_UNIX;
}

bool canShareMemory(const X11Connection &connection)
{
    if (connection.extension(&xcb_shm_id) == nullptr || !isLocal(connection)) {
        return false;
    }
    // Descriptors can be passed since version 1.2.
    const auto version = connection.reply(xcb_shm_query_version_reply, xcb_shm_query_version(connection.xcb()));
    return version && ((*version)->major_version > 1 || (*version)->minor_version >= 2);
}

PlatformError unreadableLayout()
{
    return {.domain = QString::fromLatin1(x11ErrorDomain), .code = XCB_MATCH, .description = u"unknown pixel layout"_s};
}

PlatformError outOfMemory()
{
    return {
        .domain = QString::fromLatin1(x11ErrorDomain), .code = XCB_ALLOC, .description = u"no memory for a picture"_s};
}

/// Other formats are converted on a thread of the pool.
QCoro::Task<QImage> asRgb32(QImage image)
{
    if (image.format() == QImage::Format_RGB32) {
        co_return image;
    }
    // GCC 12 destroys what a lambda inside a co_await expression holds twice.
    const QFuture<QImage> converted =
        makePicture(encodingPool(), [image] { return image.convertToFormat(QImage::Format_RGB32); });
    co_return co_await converted;
}

} // namespace

PixelLayout rootPixelLayout(const X11Connection &connection)
{
    const xcb_setup_t *setup = xcb_get_setup(connection.xcb());
    const xcb_visualtype_t *visual = rootVisual(connection.screen());
    const bool isLittleEndian = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (visual == nullptr || isLittleEndian != (QSysInfo::ByteOrder == QSysInfo::LittleEndian)) {
        return {};
    }
    const int depth = connection.screen().root_depth;
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0; xcb_format_next(&format)) {
        if (format.data->depth == depth) {
            return {.format = formatOf(depth, format.data->bits_per_pixel, *visual),
                    .bitsPerPixel = format.data->bits_per_pixel,
                    .scanlinePad = format.data->scanline_pad};
        }
    }
    return {};
}

X11PixelReader::X11PixelReader(X11Connection &connection)
    : m_connection(connection)
    , m_layout(rootPixelLayout(connection))
    , m_prepared(connection)
    , m_usesSharedMemory(canShareMemory(connection))
{
}

std::size_t X11PixelReader::sharedBytes(QSize size) const
{
    return static_cast<std::size_t>(m_layout.bytesPerLine(size.width()) * size.height());
}

void X11PixelReader::prepare(QRect part)
{
    if (m_usesSharedMemory && m_layout.format != QImage::Format_Invalid && !part.isEmpty()) {
        m_prepared.prepare(m_connection.root(), part, m_layout.bytesPerLine(part.width()));
    }
}

QCoro::Task<X11PixelReader::Result> X11PixelReader::read(xcb_drawable_t drawable, QRect part)
{
    X11Connection &connection = m_connection;
    const PixelLayout layout = m_layout;
    if (layout.format == QImage::Format_Invalid) {
        co_return tl::unexpected(unreadableLayout());
    }
    if (m_usesSharedMemory) {
        Result shared =
            co_await readShared(connection, layout, drawable, part, m_prepared.take(sharedBytes(part.size())));
        // A server in another container may not be able to map what we hand over; the drawable may still be fine.
        if (shared || !connection.isUsable()) {
            co_return shared;
        }
    }
    co_return co_await readBands(connection, layout, drawable, part);
}

QCoro::Task<X11PixelReader::Result> X11PixelReader::readShared(X11Connection &connection, PixelLayout layout,
                                                               xcb_drawable_t drawable, QRect part,
                                                               std::unique_ptr<AttachedPixels> memory)
{
    const qsizetype bytesPerLine = layout.bytesPerLine(part.width());
    if (!memory) {
        co_return tl::unexpected(outOfMemory());
    }
    const auto answer = co_await connection.replyLater<xcb_shm_get_image_reply_t>(memory->write(drawable, part, 0));
    if (!answer) {
        co_return tl::unexpected(answer.error());
    }
    co_return co_await asRgb32(AttachedPixels::intoImage(std::move(memory), part.size(), bytesPerLine, layout.format));
}

QCoro::Task<X11PixelReader::Result> X11PixelReader::readBands(X11Connection &connection, PixelLayout layout,
                                                              xcb_drawable_t drawable, QRect part)
{
    QImage image(part.size(), layout.format);
    if (image.isNull()) {
        co_return tl::unexpected(outOfMemory());
    }
    const qsizetype bytesPerLine = layout.bytesPerLine(part.width());
    const int linesPerBand = static_cast<int>(std::max<qsizetype>(1, bytesPerBand / bytesPerLine));

    struct Band {
        int top = 0;
        int lines = 0;
        xcb_get_image_cookie_t cookie{};
    };
    std::vector<Band> bands;
    xcb_connection_t *xcb = connection.xcb();
    // All bands show one moment. Nothing is waited for while the server is held: its release is already on its way.
    xcb_grab_server(xcb);
    for (int top = 0; top < part.height(); top += linesPerBand) {
        const int lines = std::min(linesPerBand, part.height() - top);
        bands.push_back(
            {top, lines,
             xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<std::int16_t>(part.x()),
                           static_cast<std::int16_t>(part.y() + top), static_cast<std::uint16_t>(part.width()),
                           static_cast<std::uint16_t>(lines), allPlanes)});
    }
    xcb_ungrab_server(xcb);

    std::optional<PlatformError> error;
    for (const Band &band : bands) {
        if (error) {
            connection.discard(band.cookie.sequence);
            continue;
        }
        const auto answer = co_await connection.replyLater<xcb_get_image_reply_t>(band.cookie.sequence);
        if (!answer) {
            error = answer.error();
            continue;
        }
        const auto *bytes = xcb_get_image_data(answer->get());
        if (xcb_get_image_data_length(answer->get()) < bytesPerLine * band.lines) {
            error = unreadableLayout();
            continue;
        }
        for (int line = 0; line < band.lines; ++line) {
            std::memcpy(image.scanLine(band.top + line), bytes + line * bytesPerLine,
                        static_cast<std::size_t>(std::min(bytesPerLine, image.bytesPerLine())));
        }
    }
    if (error) {
        co_return tl::unexpected(*error);
    }
    co_return co_await asRgb32(std::move(image));
}

} // namespace lumenfold
