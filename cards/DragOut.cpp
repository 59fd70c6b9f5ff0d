#include "cards/DragOut.h"

#include "cards/DragFolder.h"
#include "platform/dragdrop/DragSessions.h"
#include "platform/image/EncodingPool.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QMetaObject>
#include <QPromise>
#include <QThreadPool>

#include <algorithm>
#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// Empty when it was written, else why not.
QString writeFile(const QString &path, const QByteArray &png)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(png) != png.size() || !file.flush()) {
        QString error = file.errorString();
        file.remove();
        return error;
    }
    return {};
}

void logWriteFailure(const QString &error)
{
    qWarning().noquote().nospace() << "LumenFold: failed to write drag temp file: " << error;
}

} // namespace

DragOut::DragOut(DragSessions &sessions, DragFolder &folder)
    : now(&QDateTime::currentSecsSinceEpoch), m_sessions(sessions), m_folder(folder)
{
    connect(&m_writing, &QFutureWatcherBase::finished, this, [this] { written(m_writing.result()); });
}

DragOut::~DragOut() = default;

void DragOut::setImage(const Image &image)
{
    if (image != m_image) {
        m_image = image;
        m_filePath.reset();
    }
}

void DragOut::pointerDragged(const Origin &origin)
{
    if (std::exchange(m_isBusy, true)) {
        return;
    }
    m_origin = origin;
    m_view = origin.view;
    if (m_filePath && QFile::exists(*m_filePath)) {
        // Not inside the view's own event: the view may go before the drag is over.
        QMetaObject::invokeMethod(this, &DragOut::begin, Qt::QueuedConnection);
    } else {
        prepareFile();
    }
}

void DragOut::prepareFile()
{
    m_filePath.reset();
    m_image.whenEncoded(this, [this, image = m_image](const std::optional<QByteArray> &png) {
        if (png && image == m_image) {
            write(*png);
        } else {
            abandon();
        }
    });
}

void DragOut::write(const QByteArray &png)
{
    const DragFolder::NewFile file = m_folder.fileFor(now());
    if (!file.path) {
        logWriteFailure(file.error);
        abandon();
        return;
    }
    auto promise = std::make_shared<QPromise<Written>>();
    promise->start();
    m_writing.setFuture(promise->future());
    backgroundPool().start([promise, image = m_image, path = *file.path, png] {
        promise->addResult(Written{.image = image, .path = path, .error = writeFile(path, png)});
        promise->finish();
    });
}

void DragOut::written(const Written &file)
{
    if (!file.error.isEmpty()) {
        logWriteFailure(file.error);
        abandon();
    } else if (file.image != m_image) {
        abandon();
    } else {
        m_filePath = file.path;
        // Not inside the watcher's own event, for the same reason.
        QMetaObject::invokeMethod(this, &DragOut::begin, Qt::QueuedConnection);
    }
}

void DragOut::begin()
{
    const QPointer self(this);
    if (m_view && m_filePath && m_sessions.isButtonHeld()) {
        QPixmap picture = m_origin.picture;
        QPointF hotSpot = m_origin.hotSpot;
        const QSizeF size = picture.deviceIndependentSize();
        const double scale = largestSide / std::max({size.width(), size.height(), double(largestSide)});
        if (scale < 1) {
            picture = picture.scaled(picture.size() * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            hotSpot *= scale;
        }
        m_sessions.run({.path = *m_filePath,
                        .png = m_image.pngData().value_or(QByteArray()),
                        .picture = picture,
                        .hotSpot = hotSpot.toPoint(),
                        .source = m_view});
    }
    if (self) {
        abandon();
    }
}

void DragOut::abandon()
{
    m_isBusy = false;
    m_origin = {};
}

} // namespace lumenfold
