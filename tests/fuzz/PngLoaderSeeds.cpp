/// Writes small files of every kind that a PNG can be into the folder that is the argument.
#include "platform/image/PngEncoder.h"
#include "tests/unit/image/PngChunks.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>

#include <cstdio>
#include <vector>

namespace {

using namespace lumenfold::test;

constexpr int side = 9;

/// As many filtered rows as any color type and interlacing needs, each filter in turn.
PngChunk rows()
{
    QByteArray bytes;
    for (int at = 0; at < side * side * 10; ++at) {
        bytes += static_cast<char>(at % 5);
    }
    return pixelChunk(bytes);
}

QByteArray fileOf(unsigned char colorType, unsigned char bitDepth, unsigned char interlace)
{
    std::vector<PngChunk> chunks{headerChunk(
        {.width = side, .height = side, .bitDepth = bitDepth, .colorType = colorType, .interlace = interlace})};
    if (colorType == 3) {
        chunks.push_back({"PLTE", QByteArray(3 * (1 << bitDepth), 'p')});
        chunks.push_back({"tRNS", QByteArray(2, '\x7f')});
    } else if (colorType == 0) {
        chunks.push_back({"tRNS", QByteArray(2, '\1')});
    }
    chunks.push_back({"gAMA", QByteArray("\x00\x00\xb1\x8f", 4)});
    chunks.push_back({"tEXt", QByteArray("Author\0me", 9)});
    chunks.push_back(rows());
    chunks.push_back({"IEND", {}});
    return pngFile(chunks);
}

QByteArray encodedByUs(QImage::Format format)
{
    QImage picture(side, side, format);
    picture.fill(qRgba(10, 20, 30, 40));
    return lumenfold::PngEncoder::encodeAndWait(picture).value();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::vector<QByteArray> files{encodedByUs(QImage::Format_RGB32), encodedByUs(QImage::Format_ARGB32)};
    struct Kind {
        unsigned char colorType;
        std::vector<unsigned char> bitDepths;
    };
    for (const Kind &kind :
         {Kind{0, {1, 2, 4, 8, 16}}, Kind{2, {8, 16}}, Kind{3, {1, 2, 4, 8}}, Kind{4, {8, 16}}, Kind{6, {8, 16}}}) {
        for (const unsigned char bitDepth : kind.bitDepths) {
            files.push_back(fileOf(kind.colorType, bitDepth, 0));
            files.push_back(fileOf(kind.colorType, bitDepth, 1));
        }
    }
    const QDir folder(QCoreApplication::arguments().value(1));
    int number = 0;
    for (const QByteArray &bytes : files) {
        QFile file(folder.filePath(QStringLiteral("%1.png").arg(number++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            std::perror("cannot write a seed");
            return 1;
        }
    }
    return 0;
}
