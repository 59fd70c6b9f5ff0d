#pragma once

#include <QImage>

namespace lumenfold {

class Image;

/// How many pixels a thumbnail may have.
enum class ThumbnailFit {
    /// As many as were asked for.
    exact,
    /// Somewhat more will do, when that is what there is.
    atLeast,
};

/// Keeps thumbnails of pictures from files from one run to the next, so that nobody has to read a whole picture to show
/// a small one. Any thread.
class ThumbnailKeeper {
public:
    ThumbnailKeeper() = default;
    ThumbnailKeeper(const ThumbnailKeeper &) = delete;
    ThumbnailKeeper &operator=(const ThumbnailKeeper &) = delete;
    virtual ~ThumbnailKeeper() = default;

    /// A thumbnail of exactly that picture, as its file is now; of any size. Null when there is none.
    [[nodiscard]] virtual QImage find(const Image &image) = 0;

    /// The picture has a new thumbnail. Returns at once.
    virtual void thumbnailMade(const Image &image) = 0;
};

} // namespace lumenfold
