#pragma once

#include "platform/image/Image.h"

#include <QFutureWatcher>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

namespace lumenfold {

class DragFolder;
class DragSessions;

/// Lets one view's picture be dragged to other programs as a PNG file. The file is made by the first drag and used by
/// the later ones. Main thread, which waits for neither the encoding nor the disk: a drag begins once the file is
/// there, if the button is still held then.
class DragOut : public QObject {
    Q_OBJECT

public:
    /// What is dragged from where.
    struct Origin {
        /// The view; also what the pointer drags along shows it.
        QWidget *view = nullptr;
        /// The visible picture.
        QPixmap picture;
        /// The pointer in that picture, in points from its upper left corner.
        QPoint hotSpot;
    };

    /// A picture larger than this, in points, is made smaller to be dragged along.
    static constexpr int largestSide = 320;

    /// Both must outlive this.
    DragOut(DragSessions &sessions, DragFolder &folder);
    ~DragOut() override;

    /// What is dragged from now on. The file of another picture is forgotten; it stays where it is.
    void setImage(const Image &image);

    /// To be called for every movement of the pointer with the button held. Nothing while a drag is being prepared or
    /// goes on. When no file can be made, nothing happens but a line in the log.
    void pointerDragged(const Origin &origin);

    /// The file of the current picture, once there is one.
    [[nodiscard]] const std::optional<QString> &filePath() const { return m_filePath; }

    /// The clock for the file's name, seconds since 1970.
    std::function<qint64()> now;

private:
    /// How the writing of a file ended.
    struct Written {
        Image image;
        QString path;
        /// Empty when it was written, else why not.
        QString error;
    };

    void prepareFile();
    void write(const QByteArray &png);
    void written(const Written &file);
    void begin();
    void abandon();

    DragSessions &m_sessions;
    DragFolder &m_folder;
    Image m_image;
    std::optional<QString> m_filePath;
    bool m_isBusy = false;
    QPointer<QWidget> m_view;
    Origin m_origin;
    QFutureWatcher<Written> m_writing;
};

} // namespace lumenfold
