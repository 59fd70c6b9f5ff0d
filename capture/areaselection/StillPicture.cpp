#include "capture/areaselection/StillPicture.h"

#include "platform/image/EncodingPool.h"

#include <QCoroFuture>
#include <QDebug>

#include <exception>

namespace lumenfold {

QCoro::Task<QImage> stillPicture(ScreenCaptureService service, Screen screen)
{
    try {
        const Image picture = co_await service.capture(screen.frame, screen);
        // GCC 12 destroys what a lambda inside a co_await expression holds twice.
        const QFuture<QImage> made = makePicture(encodingPool(), [picture] { return picture.pixels(); });
        QImage pixels = co_await made;
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
