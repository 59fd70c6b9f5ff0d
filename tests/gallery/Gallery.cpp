/// Writes a picture of everything that is seen of the cards, on screens of two scales, and a page that shows them all.
#include "tests/gallery/Scenes.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <array>
#include <cstdio>

namespace {

using namespace lumenfold::test;

constexpr std::array scales{1, 2};

QString fileName(const Scene &scene, int scale)
{
    return QStringLiteral("%1@%2x.png").arg(scene.name).arg(scale);
}

/// The toolkit reads the scale once, at its start, so that each scale has a process of its own.
int paintScenes(QApplication &application, const QDir &folder, const QString &beginning)
{
    const int scale = qRound(application.devicePixelRatio());
    for (const Scene &scene : allScenes()) {
        if (scene.name.startsWith(beginning) && !scene.paint().save(folder.filePath(fileName(scene, scale)))) {
            std::fprintf(stderr, "cannot write to %s\n", qUtf8Printable(folder.path()));
            return 1;
        }
    }
    return 0;
}

int writePage(const QDir &folder)
{
    QFile page(folder.filePath(QStringLiteral("index.html")));
    if (!page.open(QIODevice::WriteOnly)) {
        return 1;
    }
    page.write("<!doctype html><meta charset=\"utf-8\"><title>LumenFold gallery</title>\n"
               "<style>body{font:14px sans-serif;background:#888}figure{display:inline-block;margin:8px;"
               "vertical-align:top}figcaption{color:#fff}</style>\n");
    for (const int scale : scales) {
        page.write(QStringLiteral("<h2>Scale %1</h2>\n").arg(scale).toUtf8());
        for (const Scene &scene : allScenes()) {
            page.write(QStringLiteral("<figure><img src=\"%1\"><figcaption>%2</figcaption></figure>\n")
                           .arg(fileName(scene, scale), scene.name)
                           .toUtf8());
        }
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    constexpr const char *paintingOnly = "LUMENFOLD_GALLERY_PAINTS";
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || arguments.size() > 3) {
        std::fprintf(stderr, "usage: gallery <folder for the pictures> [<how the names of the scenes begin>]\n");
        return 2;
    }
    const QDir folder(arguments[1]);
    if (qEnvironmentVariableIsSet(paintingOnly)) {
        return paintScenes(application, folder, arguments.value(2));
    }
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot make %s\n", qUtf8Printable(folder.path()));
        return 1;
    }
    for (const int scale : scales) {
        QProcess painter;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(paintingOnly), QStringLiteral("1"));
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale));
        painter.setProcessEnvironment(environment);
        painter.setProcessChannelMode(QProcess::ForwardedChannels);
        painter.start(QApplication::applicationFilePath(), arguments.mid(1));
        if (!painter.waitForFinished(120'000) || painter.exitCode() != 0) {
            return 1;
        }
    }
    return writePage(folder);
}
