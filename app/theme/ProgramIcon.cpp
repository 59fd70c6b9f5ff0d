#include "app/theme/ProgramIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>

/// Outside every namespace, as the toolkit wants it. A static library's resources are not there by themselves.
static void makeProgramIconAvailable()
{
    Q_INIT_RESOURCE(programicon);
}

namespace lumenfold {

QIcon programIcon()
{
    makeProgramIconAvailable();
    QSvgRenderer drawing(QStringLiteral(":/lumenfold/programicon.svg"));
    QIcon icon;
    // Pixels: whoever wants points on a dense screen takes the next larger one.
    for (const int side : std::array{16, 24, 32, 48, 64, 96, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        drawing.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace lumenfold
