#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace lumenfold::test {

/// The bytes of a file; `format` as the toolkit names it.
inline QByteArray fileOf(const QImage &picture, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

inline QImage plainPicture(QSize size, const QColor &color = QColor(200, 80, 40),
                           QImage::Format format = QImage::Format_RGB32)
{
    QImage picture(size, format);
    picture.fill(color);
    return picture;
}

} // namespace lumenfold::test
