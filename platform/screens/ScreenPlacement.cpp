#include "platform/screens/ScreenPlacement.h"

#include <QRectF>

#include <algorithm>
#include <optional>

namespace lumenfold {
namespace {

/// Screens whose edges are nearer than this (points) touch; divisions by a scale leave less than that.
constexpr double touching = 1e-6;

enum class Side { left, right, above, below, overlapping };

Side sideOf(const QRect &screen, const QRect &reference)
{
    const QRectF moved(screen);
    const QRectF fixed(reference);
    if (moved.left() >= fixed.right()) {
        return Side::right;
    }
    if (moved.right() <= fixed.left()) {
        return Side::left;
    }
    if (moved.top() >= fixed.bottom()) {
        return Side::below;
    }
    if (moved.bottom() <= fixed.top()) {
        return Side::above;
    }
    return Side::overlapping;
}

/// True when the two have a piece of an edge in common, not only a corner.
bool shareAnEdge(const QRect &a, const QRect &b)
{
    const QRectF first(a);
    const QRectF second(b);
    const double width = std::min(first.right(), second.right()) - std::max(first.left(), second.left());
    const double height = std::min(first.bottom(), second.bottom()) - std::max(first.top(), second.top());
    return (width == 0 && height > 0) || (height == 0 && width > 0);
}

/// One axis of a screen and of the placed screen that it is measured from. Pixels, and points for `placed`.
struct Axis {
    double low = 0;
    double length = 0;
    double scale = 1;
    double referenceLow = 0;
    double referenceLength = 0;
    double referenceScale = 1;
    double placedLow = 0;
};

/// The low edge in points. An offset is measured by the scale of the screen along whose edge it runs.
double placedAlong(const Axis &axis)
{
    const double referenceHigh = axis.referenceLow + axis.referenceLength;
    if (axis.low >= referenceHigh) {
        return axis.placedLow + axis.referenceLength / axis.referenceScale +
               (axis.low - referenceHigh) / axis.referenceScale;
    }
    if (axis.low + axis.length <= axis.referenceLow) {
        const double gap = axis.referenceLow - (axis.low + axis.length);
        return axis.placedLow - gap / axis.referenceScale - axis.length / axis.scale;
    }
    const double offset = axis.low - axis.referenceLow;
    return axis.placedLow + offset / (offset >= 0 ? axis.referenceScale : axis.scale);
}

/// Places one screen after the other, y down, with the main screen's upper left corner at (0, 0).
class Placement {
public:
    explicit Placement(const std::vector<ScreenGeometry> &screens) : m_screens(screens), m_frames(screens.size()) {}

    std::vector<QRectF> run()
    {
        m_frames.front() = QRectF(QPointF(0, 0), sizeOf(0));
        m_order.push_back(0);
        while (m_order.size() < m_screens.size()) {
            const auto [screen, reference] = next();
            place(screen, reference);
            m_order.push_back(screen);
        }
        std::vector<QRectF> frames;
        std::ranges::transform(m_frames, std::back_inserter(frames), [](const auto &frame) { return *frame; });
        return frames;
    }

private:
    struct Step {
        std::size_t screen = 0;
        std::size_t reference = 0;
    };

    [[nodiscard]] QSizeF sizeOf(std::size_t index) const
    {
        return QSizeF(m_screens[index].native.size()) / m_screens[index].scale;
    }

    /// A screen that touches a placed one, and that one; without such a screen, the first that has no place yet.
    [[nodiscard]] Step next() const
    {
        for (const std::size_t reference : m_order) {
            for (std::size_t screen = 0; screen < m_screens.size(); ++screen) {
                if (!m_frames[screen] && shareAnEdge(m_screens[screen].native, m_screens[reference].native)) {
                    return {screen, reference};
                }
            }
        }
        const auto open = std::ranges::find_if(m_frames, [](const auto &frame) { return !frame.has_value(); });
        return {static_cast<std::size_t>(open - m_frames.begin()), 0};
    }

    void place(std::size_t index, std::size_t reference)
    {
        const ScreenGeometry &screen = m_screens[index];
        const ScreenGeometry &fixed = m_screens[reference];
        const double x = placedAlong({.low = QRectF(screen.native).left(),
                                      .length = QRectF(screen.native).width(),
                                      .scale = screen.scale,
                                      .referenceLow = QRectF(fixed.native).left(),
                                      .referenceLength = QRectF(fixed.native).width(),
                                      .referenceScale = fixed.scale,
                                      .placedLow = m_frames[reference]->left()});
        const double y = placedAlong({.low = QRectF(screen.native).top(),
                                      .length = QRectF(screen.native).height(),
                                      .scale = screen.scale,
                                      .referenceLow = QRectF(fixed.native).top(),
                                      .referenceLength = QRectF(fixed.native).height(),
                                      .referenceScale = fixed.scale,
                                      .placedLow = m_frames[reference]->top()});
        QRectF frame(QPointF(x, y), sizeOf(index));
        const Side side = sideOf(screen.native, fixed.native);
        while (const auto obstacle = obstacleOf(index, frame)) {
            pushPast(*obstacle, side, frame);
        }
        m_frames[index] = frame;
    }

    /// A placed screen that the frame would overlap although the two do not overlap in pixels.
    [[nodiscard]] std::optional<QRectF> obstacleOf(std::size_t index, const QRectF &frame) const
    {
        const QRectF inside = frame.adjusted(touching, touching, -touching, -touching);
        for (const std::size_t other : m_order) {
            const bool overlapInPixels = m_screens[other].native.intersects(m_screens[index].native);
            if (!overlapInPixels && m_frames[other]->intersects(inside)) {
                return m_frames[other];
            }
        }
        return std::nullopt;
    }

    static void pushPast(const QRectF &obstacle, Side side, QRectF &frame)
    {
        switch (side) {
        case Side::left:
            frame.moveRight(obstacle.left());
            break;
        case Side::above:
            frame.moveBottom(obstacle.top());
            break;
        case Side::below:
            frame.moveTop(obstacle.bottom());
            break;
        case Side::right:
        case Side::overlapping:
            frame.moveLeft(obstacle.right());
            break;
        }
    }

    const std::vector<ScreenGeometry> &m_screens;
    std::vector<std::optional<QRectF>> m_frames;
    std::vector<std::size_t> m_order;
};

} // namespace

std::vector<Rect> placedFrames(const std::vector<ScreenGeometry> &screens)
{
    if (screens.empty()) {
        return {};
    }
    const std::vector<QRectF> topDown = Placement(screens).run();
    const double mainHeight = topDown.front().height();
    std::vector<Rect> frames;
    for (const QRectF &frame : topDown) {
        frames.push_back({frame.x(), mainHeight - frame.y() - frame.height(), frame.width(), frame.height()});
    }
    return frames;
}

} // namespace lumenfold
