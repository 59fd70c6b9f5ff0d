/// Puts the picture file that is its argument on the clipboard, says so by the line "ready", and ends as soon as its
/// input ends.
#include "platform/image/Image.h"
#include "platform/pasteboard/qt/QtPasteboard.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QSocketNotifier>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QObject::connect(QApplication::clipboard(), &QClipboard::dataChanged, &application, [] {
        if (QApplication::clipboard()->ownsClipboard()) {
            std::puts("ready");
            std::fflush(stdout);
        }
    });
    lumenfold::QtPasteboard pasteboard;
    pasteboard.clearContents();
    pasteboard.writeImage(lumenfold::Image::fromPixels(QImage(QApplication::arguments().value(1))));
    const QSocketNotifier terminated(0, QSocketNotifier::Read);
    QObject::connect(&terminated, &QSocketNotifier::activated, &application, &QApplication::quit);
    return QApplication::exec();
}
