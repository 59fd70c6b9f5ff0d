/// Feeds the reader of autostart files, which anybody may have written, and their writer with paths of any kind: what
/// is written starts the program, whatever its path.
#include "platform/autostart/AutostartEntry.h"

#include <cstdint>
#include <cstdlib>

using namespace lumenfold;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const autostartEntry::Session anything{.desktops = {QStringLiteral("GNOME")},
                                           .isInstalled = [](const QString &) { return true; }};
    (void)autostartEntry::starts(bytes, anything);

    const QString program = QString::fromUtf8(bytes);
    if (!autostartEntry::starts(autostartEntry::starting(program, program, program), anything) ||
        autostartEntry::starts(autostartEntry::startingNothing(program), anything)) {
        std::abort();
    }
    return 0;
}
