#pragma once

#include "platform/geometry/Geometry.h"

#include <QFont>
#include <QSizeF>
#include <QString>

class QPainter;
class QPointF;

namespace lumenfold {

/// "640 × 480": the whole points of a selection's width and height.
[[nodiscard]] QString selectionLabelText(Size selection);

/// The little tag beside a selection that says its size. Every digit takes the same room, so that the tag does not
/// tremble while the numbers change.
class SelectionLabel {
public:
    SelectionLabel();

    /// In points, of the tag that shows `text`.
    [[nodiscard]] QSizeF size(const QString &text) const;

    /// White on the accent colour; `topLeft` in the painter's coordinates.
    void paint(QPainter &painter, QPointF topLeft, const QString &text) const;

private:
    [[nodiscard]] double advance(QChar character) const;

    QFont m_font;
    double m_digitAdvance = 0;
    double m_ascent = 0;
    double m_height = 0;
};

} // namespace lumenfold
