/// Writes small pictures of the kinds that templates have, and of some that they do not, into the folder that is the
/// argument.
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QImageWriter>

#include <cstdio>

namespace {

bool write(const QDir &folder, const QString &name, const QImage &picture, const char *format, bool progressive)
{
    QImageWriter writer(folder.filePath(name), format);
    writer.setProgressiveScanWrite(progressive);
    return writer.write(picture);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1));
    QImage picture(40, 24, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgba(x * 6, y * 10, (x * y) % 256, 255 - x));
        }
    }
    const QImage gray = picture.convertToFormat(QImage::Format_Grayscale8);
    if (!write(folder, QStringLiteral("color.jpg"), picture, "jpeg", false) ||
        !write(folder, QStringLiteral("progressive.jpg"), picture, "jpeg", true) ||
        !write(folder, QStringLiteral("gray.jpg"), gray, "jpeg", false) ||
        !write(folder, QStringLiteral("color.png"), picture, "png", false) ||
        !write(folder, QStringLiteral("gray.png"), gray, "png", false) ||
        !write(folder, QStringLiteral("color.bmp"), picture, "bmp", false)) {
        std::perror("cannot write a seed");
        return 1;
    }
    return 0;
}
