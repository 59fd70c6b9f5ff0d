#include "platform/panels/AnimationCurve.h"

#include <QEasingCurve>
#include <QPointF>

#include <algorithm>

namespace lumenfold {
namespace {

QEasingCurve bezier(QPointF firstControl, QPointF secondControl)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(firstControl, secondControl, {1, 1});
    return curve;
}

} // namespace

double progressAt(double elapsed, AnimationCurve curve)
{
    static const QEasingCurve standard = bezier({0.42, 0}, {0.58, 1});
    static const QEasingCurve easeIn = bezier({0.42, 0}, {1, 1});
    const double inside = std::clamp(elapsed, 0.0, 1.0);
    switch (curve) {
    case AnimationCurve::standard:
        return standard.valueForProgress(inside);
    case AnimationCurve::easeIn:
        return easeIn.valueForProgress(inside);
    }
    return inside;
}

} // namespace lumenfold
