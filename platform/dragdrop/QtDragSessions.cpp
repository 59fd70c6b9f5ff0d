#include "platform/dragdrop/QtDragSessions.h"

#include "platform/dragdrop/DraggedFile.h"

#include <QCoreApplication>
#include <QDrag>
#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

#include <memory>

namespace lumenfold {
namespace {

/// Calls a drag off when the window that it came from is hidden: the server then lets go of the pointer, and nobody
/// would tell that the button was released.
class HideWatch : public QObject {
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Hide) {
            QDrag::cancel();
        }
        return false;
    }
};

} // namespace

bool QtDragSessions::isButtonHeld() const
{
    return QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
}

void QtDragSessions::run(const FileDrag &drag)
{
    HideWatch watch;
    drag.source->window()->installEventFilter(&watch);
    // Belongs to the application and not to the view, which may go while it is dragged from; the toolkit deletes it.
    auto *session = new QDrag(QCoreApplication::instance());
    session->setMimeData(new DraggedFile(drag.path, drag.png));
    session->setPixmap(drag.picture);
    session->setHotSpot(drag.hotSpot);
    session->exec(Qt::CopyAction, Qt::CopyAction);
}

} // namespace lumenfold
