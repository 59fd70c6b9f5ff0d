#pragma once

#include "platform/screencapture/PreparedPixels.h"
#include "platform/x11/X11Connection.h"

#include <QCoroTask>
#include <QImage>
#include <QRect>

#include <tl/expected.hpp>

namespace lumenfold {

/// How the server lays out pixels of the root window's depth, in the toolkit's words.
struct PixelLayout {
    QImage::Format format = QImage::Format_Invalid;
    int bitsPerPixel = 0;
    int scanlinePad = 0;

    [[nodiscard]] qsizetype bytesPerLine(int width) const
    {
        constexpr qsizetype bitsPerByte = 8;
        const qsizetype bits = qsizetype{width} * bitsPerPixel;
        return (bits + scanlinePad - 1) / scanlinePad * scanlinePad / bitsPerByte;
    }
    friend bool operator==(const PixelLayout &, const PixelLayout &) = default;
};

/// The layout of the root window's pixels; Format_Invalid when it is none that we can show.
[[nodiscard]] PixelLayout rootPixelLayout(const x11::X11Connection &connection);

/// Reads windows and pixmaps of the root window's depth. Through memory shared with the server where that is possible
/// (the server writes straight into the picture), else through the socket in bands.
///
/// The event loop runs while the server works, however long it takes.
class X11PixelReader {
public:
    using Result = tl::expected<QImage, PlatformError>;

    /// Asks the server what it can do; waits for the answer.
    explicit X11PixelReader(x11::X11Connection &connection);

    /// A part of the root window, or one of this size of something else, is going to be read within a moment.
    void prepare(QRect part);

    /// `part` must lie within the drawable. The picture's format is RGB32, its unused bytes as the server left them.
    /// Only `connection` is used after this returns, so the reader may go away meanwhile.
    [[nodiscard]] QCoro::Task<Result> read(xcb_drawable_t drawable, QRect part);

    [[nodiscard]] bool usesSharedMemory() const { return m_usesSharedMemory; }
    /// For servers that share memory but whose other way is to be tested.
    void avoidSharedMemory() { m_usesSharedMemory = false; }

private:
    [[nodiscard]] std::size_t sharedBytes(QSize size) const;
    static QCoro::Task<Result> readShared(x11::X11Connection &connection, PixelLayout layout, xcb_drawable_t drawable,
                                          QRect part, std::unique_ptr<AttachedPixels> memory);
    static QCoro::Task<Result> readBands(x11::X11Connection &connection, PixelLayout layout, xcb_drawable_t drawable,
                                         QRect part);

    x11::X11Connection &m_connection;
    PixelLayout m_layout;
    PreparedPixels m_prepared;
    bool m_usesSharedMemory = false;
};

} // namespace lumenfold
