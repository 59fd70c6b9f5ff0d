#pragma once

#include <QImage>

namespace lumenfold::bench {

/// A desktop as people have it, painted by the toolkit: a wallpaper that is as hard to encode as a photograph (smooth
/// light, clouds and the grain of a sensor) under windows full of text, light and dark, with a panel above. The same
/// picture on every run, but for the fonts of the machine. Format RGB32. Needs a QGuiApplication.
[[nodiscard]] QImage desktopPicture(QSize size);

} // namespace lumenfold::bench
