#include "platform/memory/FilePages.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <sys/mman.h>

#include <array>
#include <cstdio>

namespace lumenfold {
namespace {

struct Mapping {
    unsigned long start = 0;
    unsigned long end = 0;
    bool isWritable = false;
    /// Pages of it are the program's own, no longer the file's.
    bool isChanged = false;
};

/// Lines like "7f3a1c000000-7f3a1c021000 r-xp 00000000 fe:01 1234 /usr/lib/…", each with its figures in lines like
/// "Anonymous:  12 kB" behind it.
QList<Mapping> mappingsOf(QByteArrayView part)
{
    QFile file(QStringLiteral("/proc/self/smaps"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<Mapping> mappings;
    bool isWanted = false;
    for (const QByteArray &line : file.readAll().split('\n')) {
        Mapping mapping;
        std::array<char, 5> rights{};
        if (std::sscanf(line.constData(), "%lx-%lx %4s", &mapping.start, &mapping.end, rights.data()) == 3) {
            isWanted = line.contains(part);
            if (isWanted) {
                mapping.isWritable = rights[1] == 'w';
                mappings.append(mapping);
            }
        } else if (isWanted && (line.startsWith("Anonymous:") || line.startsWith("Swap:")) && !line.endsWith(" 0 kB")) {
            mappings.last().isChanged = true;
        }
    }
    return mappings;
}

void advise(const Mapping &mapping, int advice)
{
    ::madvise(reinterpret_cast<void *>(mapping.start), mapping.end - mapping.start, advice);
}

} // namespace

void giveBackFilePages(QByteArrayView part)
{
    for (const Mapping &mapping : mappingsOf(part)) {
        // Of others the changes would be lost.
        if (!mapping.isWritable && !mapping.isChanged) {
            advise(mapping, MADV_DONTNEED);
        }
    }
}

void readFilePagesAhead(QByteArrayView part)
{
    for (const Mapping &mapping : mappingsOf(part)) {
        advise(mapping, MADV_WILLNEED);
    }
}

} // namespace lumenfold
