#include "capture/areaselection/SnapEdges.h"

#include <cmath>

namespace lumenfold {
namespace {

double nearest(double value, const std::vector<double> &candidates)
{
    double best = value;
    double bestDistance = SnapEdges::snapThreshold;
    for (const double candidate : candidates) {
        const double distance = std::abs(candidate - value);
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

bool isTarget(const WindowInfo &window, qint64 ownProcessID)
{
    if (window.ownerProcessID == ownProcessID || window.layer.value_or(0) != 0) {
        return false;
    }
    return window.bounds && window.bounds->width > 1 && window.bounds->height > 1;
}

} // namespace

Point SnapEdges::snapped(Point point) const
{
    return {nearest(point.x, snapXs), nearest(point.y, snapYs)};
}

SnapEdges snapEdges(const std::vector<WindowInfo> &windows, const SnapEdgesOptions &options)
{
    const Rect &screen = options.screenFrame;
    SnapEdges edges;
    for (const WindowInfo &window : windows) {
        if (!isTarget(window, options.ownProcessID)) {
            continue;
        }
        const WindowBounds &bounds = *window.bounds;
        edges.snapXs.push_back(bounds.x - screen.x);
        edges.snapXs.push_back(bounds.x + bounds.width - screen.x);
        edges.snapYs.push_back(options.mainScreenHeight - (bounds.y + bounds.height) - screen.y);
        edges.snapYs.push_back(options.mainScreenHeight - bounds.y - screen.y);
    }
    edges.snapXs.insert(edges.snapXs.end(), {0, screen.width});
    edges.snapYs.insert(edges.snapYs.end(), {0, screen.height});
    return edges;
}

} // namespace lumenfold
