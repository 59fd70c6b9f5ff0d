#pragma once

#include "platform/image/Image.h"

#include <QFutureWatcher>
#include <QImage>
#include <QObject>
#include <QSize>

namespace lumenfold {

/// One picture as large as a window: what there is of it at once, and all of it a moment later, decoded and scaled on a
/// pool. Main thread.
class FullPicture : public QObject {
    Q_OBJECT

public:
    explicit FullPicture(Image image);
    ~FullPicture() override;

    /// To be shown in that many device pixels.
    void prepare(QSize device);

    /// Null while there is nothing. The one that is complete has exactly the device pixels; until then it is to be
    /// scaled by whoever paints it.
    [[nodiscard]] const QImage &picture() const { return m_picture; }
    /// Whether that is all that can be seen of it.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

Q_SIGNALS:
    /// There is another picture.
    void changed();

private:
    const Image m_image;
    QImage m_picture;
    bool m_isComplete = false;
    QSize m_preparedFor;
    QFutureWatcher<QImage> m_watcher;
};

} // namespace lumenfold
