#pragma once

#include "capture/areaselection/SelectionDrag.h"
#include "capture/areaselection/SelectionLabel.h"
#include "platform/geometry/Geometry.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QRegion>
#include <QWidget>

#include <functional>

namespace lumenfold {

/// What one screen shows while an area is being selected: the dimming, the selection as a clear hole in it, and the
/// selection's size. Fills its screen.
///
/// View coordinates are points with the origin at the screen's bottom left and y up; the toolkit's own (y down) are
/// turned over in two functions of the .cpp and appear nowhere else.
class SelectionView : public QWidget {
    Q_OBJECT

public:
    struct Options {
        /// Of the screen, in points.
        Size screenSize;
        /// What is under the dimming where windows cannot be translucent: the screen's picture, in device pixels. A
        /// null picture stands for a translucent window.
        QImage backdrop;
        /// Asked at every press, because windows move between presses.
        std::function<SnapEdges()> snapEdges;
    };

    explicit SelectionView(Options options);

    /// What lies over the screen, but for the selection.
    [[nodiscard]] static QColor dimming();

    [[nodiscard]] const SelectionDrag &selection() const { return m_drag; }

Q_SIGNALS:
    /// A drag ended; `rect` is in view coordinates.
    void selected(lumenfold::Rect rect);
    /// The button was pressed and let go without a selection.
    void clicked();
    /// A right click.
    void cancelled();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] Point viewPoint(const QMouseEvent &event) const;
    [[nodiscard]] QRectF toolkitRect(const Rect &rect) const;
    [[nodiscard]] QRectF labelRect(const Rect &selection) const;
    [[nodiscard]] QRegion markRegion(const std::optional<Rect> &selection) const;
    void repaintChange(const std::optional<Rect> &before, const std::optional<Rect> &after);
    void paintDimming(QPainter &painter, const QRegion &region) const;
    void paintHole(QPainter &painter, const QRectF &hole) const;
    void paintBackdrop(QPainter &painter, const QRectF &part) const;

    Size m_screenSize;
    QImage m_backdrop;
    std::function<SnapEdges()> m_snapEdges;
    SelectionDrag m_drag;
    SelectionLabel m_label;
};

} // namespace lumenfold
