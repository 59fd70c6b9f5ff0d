/// Shows that LumenFold works where there is no display: starts it on a virtual desktop of its own, presses the
/// shortcut of a full-screen capture as a person would, and keeps what came of it. Usage: first_capture <folder>
#include "tests/support/desktop/Desktop.h"
#include "tests/support/desktop/PrivateFolders.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QPainter>

#include <cstdio>
#include <exception>
#include <stdexcept>

using namespace lumenfold::test;

namespace {

constexpr QSize desktopSize{1600, 1000};
constexpr QRect letterFrame{520, 170, 760, 560};

/// A window with something to read in it.
QImage letter(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(QColor(252, 251, 247));
    QPainter painter(&picture);
    painter.fillRect(0, 0, size.width(), 56, QColor(48, 63, 84));
    QFont font(QStringLiteral("DejaVu Sans"), 16);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(28, 0, size.width() - 56, 56), Qt::AlignVCenter, QStringLiteral("A letter"));
    font.setPointSize(13);
    painter.setFont(font);
    painter.setPen(QColor(40, 40, 44));
    painter.drawText(
        QRect(28, 84, size.width() - 56, size.height() - 112), Qt::TextWordWrap,
        QStringLiteral(
            "Super+Alt+1 was pressed while this window was in front.\n\nThe picture of the whole screen went "
            "to the clipboard at once, and stands as a card at the lower left edge, from where it can be "
            "saved, dragged into another program, pinned or looked at in full size.\n\nThe card is not in "
            "the picture, and this window kept the keyboard."));
    return picture;
}

void require(bool condition, const char *complaint)
{
    if (!condition) {
        throw std::runtime_error(complaint);
    }
}

void capture(Desktop &desktop, const QDir &folder)
{
    desktop.paintBackground(photographLike(desktopSize));
    TestWindow &window = desktop.openWindow({.frame = letterFrame, .picture = letter(letterFrame.size())});
    window.focus();
    desktop.startProgram();
    const QImage before = desktop.waitForStillPicture();

    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    const QByteArray png = desktop.clipboardPng();
    require(!png.isEmpty(), "no PNG came to the clipboard");
    const QImage picture = QImage::fromData(png, "PNG");
    const QList<WindowInfo> cards = desktop.waitForPanels(1);
    const QImage after = desktop.waitForStillPicture();
    writeFile(folder.filePath(QStringLiteral("capture.png")), png);
    require(after.save(folder.filePath(QStringLiteral("desktop.png"))), "the picture of the desktop cannot be written");

    require(differingPixels(picture, before) == 0, "the captured picture is not what stood on the screen");
    require(cards.first().frame.intersects(differingRegion(before, after)), "the card cannot be seen on the screen");
    require(window.hasFocus(), "the window in front lost the keyboard");
    require(desktop.quitProgram() == Process::Exit{.status = 0}, "LumenFold did not end in order");
    std::printf("LumenFold ran on a virtual desktop, and Super+Alt+1 captured it:\n"
                "  %s (%d x %d, as it stood on the clipboard)\n"
                "  %s (the desktop afterwards, with the card)\n",
                qPrintable(folder.filePath(QStringLiteral("capture.png"))), picture.width(), picture.height(),
                qPrintable(folder.filePath(QStringLiteral("desktop.png"))));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: first_capture <folder>\n");
        return 2;
    }
    // Only for the fonts of the letter; Qt asks for a folder of the session, which there may be none of.
    const PrivateFolders ownFolders;
    qputenv("XDG_RUNTIME_DIR", ownFolders.path("runtime").toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    QDir(folder).removeRecursively();
    std::unique_ptr<Desktop> desktop;
    try {
        if (!folder.mkpath(QStringLiteral("."))) {
            throw std::runtime_error("cannot make " + folder.path().toStdString());
        }
        desktop = std::make_unique<Desktop>(DesktopOptions{.size = desktopSize, .compositor = CompositorKind::plain});
        capture(*desktop, folder);
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "The first capture failed: %s\n", error.what());
        if (desktop) {
            try {
                desktop->keepEvidence(folder.filePath(QStringLiteral("failure")));
                std::fprintf(stderr, "The screen and the logs are kept in %s\n",
                             qPrintable(folder.filePath(QStringLiteral("failure"))));
            } catch (const std::exception &alsoFailed) {
                std::fprintf(stderr, "Nothing could be kept of it: %s\n", alsoFailed.what());
            }
        }
        return 1;
    }
}
