#pragma once

#include <QByteArray>
#include <QImage>

#include <functional>
#include <optional>

namespace lumenfold {

/// Makes PNG files from pixels, fast enough that nobody waits for a picture of a whole desktop: bands of rows are
/// filtered and deflated side by side on the encoding pool, and the pieces join into one ordinary file.
///
/// The pixels are Format_RGB32 or Format_ARGB32 and are shared, never copied. A picture without a transparent pixel
/// becomes RGB, any other RGBA, 8 bits a channel. Any thread.
class PngEncoder {
public:
    /// Gets the whole file; nothing when the picture is null, has another format, is larger than a PNG of ours may be
    /// (see PngFormat.h), or memory ran out.
    using Done = std::function<void(std::optional<QByteArray>)>;

    /// Begins to encode; `done` is called once, on a thread of the pool.
    static void encode(QImage image, Done done);

    /// Encodes and waits. Never on a thread of the pool, which would wait for itself.
    [[nodiscard]] static std::optional<QByteArray> encodeAndWait(QImage image);
};

} // namespace lumenfold
