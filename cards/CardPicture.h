#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"

#include <QFutureWatcher>
#include <QImage>
#include <QObject>
#include <QRectF>

class QPainter;

namespace lumenfold {

/// The pixels to which an image of `pixels` is scaled so that it just fills `device` pixels, its proportions kept.
[[nodiscard]] PixelSize fillingSize(PixelSize pixels, PixelSize device);

/// The part of an image of `pixels` that is seen when it fills an area of these proportions: all of one dimension, the
/// middle of the other.
[[nodiscard]] QRectF visiblePart(QSizeF pixels, QSizeF area);

/// What a card shows of its image: a copy of as many pixels as the card has on screen. The full-size pixels are let go
/// once there is a copy; another one is then made on a pool. Main thread.
class CardPicture : public QObject {
    Q_OBJECT

public:
    enum class Sharpness {
        /// The copy has exactly the card's pixels, as soon as it can be had.
        exact,
        /// A copy that is a little too large will do: the card is smaller for a while.
        passing,
    };

    explicit CardPicture(Image image);
    ~CardPicture() override;

    /// Fills `area` (points) with the picture, cut off at rounded corners. Paints a neutral colour while there is no
    /// copy, and what there is until a better one is made.
    void paint(QPainter &painter, const QRectF &area, double cornerRadius, Sharpness sharpness);

Q_SIGNALS:
    /// There is another copy to paint.
    void changed();
    /// There is nothing to paint and never will be: the image's file is broken or gone.
    void unreadable();

private:
    void prepare(PixelSize device, Sharpness sharpness);
    void takeCopy(const QImage &copy);

    const Image m_image;
    QImage m_copy;
    /// What the image had at hand, shown until there is a copy.
    QImage m_standIn;
    /// The bounds that the present copy and the one in the making are for.
    PixelSize m_madeFor;
    PixelSize m_making;
    QFutureWatcher<QImage> m_watcher;
};

} // namespace lumenfold
