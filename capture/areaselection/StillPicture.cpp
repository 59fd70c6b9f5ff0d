#include "capture/areaselection/StillPicture.h"

#include <QDebug>

#include <exception>

namespace lumenfold {

QCoro::Task<QImage> stillPicture(ScreenCaptureService service, Screen screen)
{
    try {
        const Image picture = co_await service.capture(screen.frame, screen);
        QImage pixels = picture.pixels();
        if (!pixels.isNull()) {
            co_return pixels;
        }
        qWarning().noquote().nospace() << "LumenFold capture error: the still picture of the screen is empty";
    } catch (const std::exception &error) {
        qWarning().noquote().nospace() << "LumenFold capture error: " << error.what();
    }
    QImage grey(1, 1, QImage::Format_RGB32);
    grey.fill(Qt::gray);
    co_return grey;
}

} // namespace lumenfold
