#pragma once

#include "platform/files/FileContents.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/ThumbnailKeeper.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QObject;

namespace lumenfold {

/// A picture: a cheap handle that its copies share. Two handles are equal when they share one picture.
///
/// A picture has pixels, PNG bytes or both, and each is made from the other at most once. A picture made from pixels
/// starts to encode itself on a pool at once, so that the bytes are usually there before anybody asks. Any thread may
/// use a handle of its own.
class Image {
public:
    /// No picture: no representation, size 0 x 0, no bytes.
    Image() = default;

    /// Takes the pixels (made opaque RGB32 or kept ARGB32; other formats are converted) and starts encoding them. They
    /// are shared, not copied, so the cleanup function of a QImage that wraps somebody else's memory is called when the
    /// last handle has let them go: on any thread, and possibly after this picture is gone.
    [[nodiscard]] static Image fromPixels(QImage pixels);
    /// The same for pixels as a screen has them, opaque whatever the unused bytes of their RGB32 say: an X server
    /// leaves there what the last program that drew had in it, and the toolkit would copy that into pictures that do
    /// have transparency. Encoding passes over those bytes, so they are set right only for whoever asks for pixels.
    [[nodiscard]] static Image fromScreenPixels(QImage pixels);
    /// From PNG bytes; no picture when they are not a PNG whose header says a believable size. Pixels are made when
    /// asked for.
    [[nodiscard]] static Image fromPng(QByteArray png);
    /// From a PNG file that is read when its bytes are asked for. No picture when the file is cut off, or small and
    /// broken; whether all of a large one is right is seen only when it is read. Whoever deletes or replaces the file
    /// calls keepBytesOfFile() first; of the first few hundred files the bytes stay anyway.
    [[nodiscard]] static Image fromPngFile(const QString &path);
    /// A picture of which only the size in points is known: no representation, no bytes. For tests and failures.
    [[nodiscard]] static Image withoutRepresentation(Size size);

    [[nodiscard]] bool isNull() const;

    /// The pixel size of the first representation, if the picture has one.
    [[nodiscard]] std::optional<PixelSize> pixelSize() const;
    /// In points. One point is one captured pixel, so this is the pixel size for every picture that has one.
    [[nodiscard]] Size size() const;

    /// The pixels; decoded now if they were released, and copied the first time if they are a screen's: not for the
    /// main thread. Null when there is no representation or the bytes are broken.
    [[nodiscard]] QImage pixels() const;
    [[nodiscard]] bool holdsPixels() const;

    /// The PNG encoding, or nothing when there is none to be had. Waits for a running encoding.
    [[nodiscard]] std::optional<QByteArray> pngData() const;
    /// What writes the PNG encoding into a file, or nothing when there is none to be had; the cheapest way there is for
    /// a picture from a file. Waits for a running encoding, and lives on its own.
    [[nodiscard]] std::optional<FileWriter> pngWriter() const;
    /// True when pngData() answers without waiting.
    [[nodiscard]] bool isEncoded() const;
    /// Calls `done` on the thread of `context` once the encoding is there (or has failed), never inside this call, and
    /// not at all once `context` is gone.
    void whenEncoded(QObject *context, std::function<void(std::optional<QByteArray>)> done) const;

    /// A copy of the picture scaled down to fit into `bounds` pixels, its proportions kept, and never scaled up; made
    /// once for each of the latest few bounds. Reads the bytes if the pixels were released, which takes some 50
    /// milliseconds for a whole 4K desktop, unless somebody keeps its thumbnails. Null when there are no pixels or no
    /// room.
    [[nodiscard]] QImage thumbnail(PixelSize bounds, ThumbnailFit fit = ThumbnailFit::exact) const;
    /// The largest of the thumbnails that are at hand, at once; null when there is none.
    [[nodiscard]] QImage readyThumbnail() const;

    /// The thumbnail to show in the next run: the latest that was asked for exactly, else the latest of all. Null when
    /// there is none.
    struct LatestThumbnail {
        QImage picture;
        ThumbnailFit fit = ThumbnailFit::exact;
    };
    [[nodiscard]] LatestThumbnail latestThumbnail() const;
    /// From now on the thumbnails are looked for and kept there.
    void keepThumbnailsWith(std::shared_ptr<ThumbnailKeeper> keeper) const;
    /// What tells the bytes of the picture's file from those of other files and of other versions of it; nothing when
    /// its bytes are in no file.
    [[nodiscard]] std::optional<QByteArray> fileFingerprint() const;

    /// The picture's bytes have been written to this file and need not stay in memory. From then on it is like a
    /// picture from that file; nothing changes when it is one already, or the file has other bytes.
    void leaveBytesToFile(const QString &path) const;
    /// Before the file that has this picture's bytes is deleted or replaced: they stay.
    void keepBytesOfFile() const;

    /// From now on keep no full-size pixels once the bytes are there; they are decoded again when asked for.
    void releasePixelsWhenEncoded() const;

    friend bool operator==(const Image &, const Image &) = default;

private:
    enum class UnusedBytes { set, stray };

    struct Shared;
    [[nodiscard]] static Image fromPixels(QImage pixels, UnusedBytes unusedBytes);
    explicit Image(std::shared_ptr<Shared> shared);
    std::shared_ptr<Shared> m_shared;
};

} // namespace lumenfold
