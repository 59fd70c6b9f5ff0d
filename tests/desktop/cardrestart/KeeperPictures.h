#pragma once

#include <QImage>
#include <QString>

/// The pictures of the cards that a program keeps which is going to be killed: whoever finds one can tell whether every
/// pixel is as it was.
namespace lumenfold::test {

/// `text` is what the picture's pixels come from. RGB32.
[[nodiscard]] QImage keeperPicture(const QString &text, int version);

/// True when the picture is the one of that text and of the version that it says itself.
[[nodiscard]] bool isKeeperPicture(const QImage &picture, const QString &text);

} // namespace lumenfold::test
