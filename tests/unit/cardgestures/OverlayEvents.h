#pragma once

#include "platform/geometry/Geometry.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace lumenfold::test {

/// Where the pointer is when a button goes down.
inline constexpr Point pressed{300, 400};

/// A mouse event for one view, as the toolkit delivers it to whoever has the pointer. `location` is where the pointer
/// is on a screen of 900 points' height; the view may be somewhere else by now.
inline bool sendMouse(QWidget &view, QEvent::Type type, QPointF place, Point location,
                      Qt::MouseButton button = Qt::LeftButton)
{
    const bool isRelease = type == QEvent::MouseButtonRelease;
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, place, QPointF(location.x, 900 - location.y), isMove ? Qt::NoButton : button,
                      isRelease ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
    event.setAccepted(true);
    QCoreApplication::sendEvent(&view, &event);
    return event.isAccepted();
}

} // namespace lumenfold::test
