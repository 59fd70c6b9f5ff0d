#pragma once

#include <QFont>
#include <QImage>
#include <QPalette>
#include <QRect>
#include <QString>

class QPainter;

namespace lumenfold {

/// How one template looks in the grid: its picture in a box, its name below, and a badge on the selected one. Points.
struct TemplateCell {
    QString name;
    /// Null while there is none.
    QImage picture;
    bool isSelected = false;
    bool isHovered = false;
    bool hasFocus = false;

    [[nodiscard]] static int height(int width, const QFont &font);
    /// Where the picture has room, of a cell with its upper left corner there.
    [[nodiscard]] static QRect pictureBox(const QRect &cell);
    /// Whether the name has to be cut off.
    [[nodiscard]] static bool isCutOff(const QString &name, int width, const QFont &font);

    void paint(QPainter &painter, const QRect &cell, const QFont &font, const QPalette &palette) const;
};

} // namespace lumenfold
