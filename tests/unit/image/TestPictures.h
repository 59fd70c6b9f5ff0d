#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

namespace lumenfold::test {

[[nodiscard]] QImage plainPicture(QSize size, QColor color = Qt::darkCyan);
/// Smooth in both directions, every channel differently. RGB32.
[[nodiscard]] QImage gradientPicture(QSize size);
/// Nothing can be guessed from anything else. RGB32.
[[nodiscard]] QImage noisePicture(QSize size, unsigned seed = 1);
/// Few colours that come again and again, as in a window of text. RGB32.
[[nodiscard]] QImage textLikePicture(QSize size);
/// The same colours, every alpha from 0 to 255. ARGB32.
[[nodiscard]] QImage withTransparency(const QImage &picture);
/// The same pixels in memory whose rows are farther apart than they are long, with other bytes between.
[[nodiscard]] QImage withPaddedRows(const QImage &picture);

} // namespace lumenfold::test
