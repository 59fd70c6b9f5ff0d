/// Draws the program's icon in the sizes that desktops look for: render_icons <drawing> <folder> <size>...; a picture
/// is <folder>/<size>.png.
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QSvgRenderer drawing(arguments.value(1));
    const QDir folder(arguments.value(2));
    if (!drawing.isValid()) {
        std::fprintf(stderr, "render_icons: this is no drawing: %s\n", qUtf8Printable(arguments.value(1)));
        return 1;
    }
    for (const QString &size : arguments.mid(3)) {
        QImage picture(size.toInt(), size.toInt(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        drawing.render(&painter);
        painter.end();
        if (!picture.save(folder.filePath(size + QStringLiteral(".png")))) {
            std::fprintf(stderr, "render_icons: cannot write to %s\n", qUtf8Printable(folder.path()));
            return 1;
        }
    }
    return 0;
}
