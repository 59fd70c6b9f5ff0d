#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace lumenfold::test {

/// A mouse event for one view, as the toolkit delivers it to whoever has the pointer.
inline bool sendMouse(QWidget &view, QEvent::Type type, QPointF place, Qt::MouseButton button = Qt::LeftButton)
{
    const bool isRelease = type == QEvent::MouseButtonRelease;
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, place, view.mapToGlobal(place), isMove ? Qt::NoButton : button,
                      isRelease ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
    event.setAccepted(true);
    QCoreApplication::sendEvent(&view, &event);
    return event.isAccepted();
}

} // namespace lumenfold::test
