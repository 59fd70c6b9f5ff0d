#pragma once

#include <QByteArray>
#include <QPixmap>
#include <QPoint>
#include <QString>

class QWidget;

namespace lumenfold {

/// One picture that is dragged out as a file.
struct FileDrag {
    /// The file, which exists. What is offered first, as an address.
    QString path;
    /// The same picture for programs that want no file.
    QByteArray png;
    /// What is seen beneath the pointer, and the pointer's place in it (points, origin top left).
    QPixmap picture;
    QPoint hotSpot;
    /// The drag is called off when the window of this view goes off the screen; must live when the drag begins.
    QWidget *source = nullptr;
};

/// Drags what this program has to other programs. Main thread; one drag at a time.
class DragSessions {
public:
    DragSessions() = default;
    DragSessions(const DragSessions &) = delete;
    DragSessions &operator=(const DragSessions &) = delete;
    virtual ~DragSessions() = default;

    /// Whether the button by which things are dragged is held now.
    [[nodiscard]] virtual bool isButtonHeld() const = 0;

    /// Drags the file about until the button is let go, for others to copy and for nothing else. Returns when that is
    /// over; meanwhile everything else goes on, so that whoever calls this may be gone when it returns.
    virtual void run(const FileDrag &drag) = 0;
};

} // namespace lumenfold
