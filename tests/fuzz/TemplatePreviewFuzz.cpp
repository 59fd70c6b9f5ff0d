/// Feeds the reader of the templates' pictures, which come from anywhere. Whatever they hold, it gives a picture within
/// the bounds, or none.
#include "service/templates/PreviewDecoder.h"

#include <QtGlobal>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr lumenfold::PixelSize bounds{64, 48};

/// The library that reads JPEG says in the log what it thinks of a file; millions of lines are of no use.
void say(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(say);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QImage picture = lumenfold::decodePreview(bytes, bounds);
    if (!picture.isNull() && (picture.width() > bounds.width || picture.height() > bounds.height)) {
        std::abort();
    }
    return 0;
}
