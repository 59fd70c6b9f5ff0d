#include "platform/memory/FilePages.h"

#include <QFile>
#include <QList>

#include <sys/mman.h>

#include <array>
#include <cstdio>

namespace lumenfold {
namespace {

struct Mapping {
    QByteArray path;
    unsigned long start = 0;
    unsigned long end = 0;
    bool isWritable = false;
    /// Pages of it are the program's own, no longer the file's.
    bool isChanged = false;
};

/// What the system tells in a moment; and with figures, for which it looks at every page.
constexpr const char *mapsFile = "/proc/self/maps";
constexpr const char *mapsWithFigures = "/proc/self/smaps";

/// Lines like "7f3a1c000000-7f3a1c021000 r-xp 00000000 fe:01 1234 /usr/lib/…", each with its figures in lines like
/// "Anonymous:  12 kB" behind it.
QList<Mapping> readMappings(const char *source)
{
    QFile file(QString::fromLatin1(source));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<Mapping> all;
    for (const QByteArray &line : file.readAll().split('\n')) {
        Mapping mapping;
        std::array<char, 5> rights{};
        if (std::sscanf(line.constData(), "%lx-%lx %4s", &mapping.start, &mapping.end, rights.data()) == 3) {
            const qsizetype path = line.indexOf('/');
            mapping.path = path < 0 ? QByteArray() : line.mid(path);
            mapping.isWritable = rights[1] == 'w';
            all.append(mapping);
        } else if (!all.isEmpty() && (line.startsWith("Anonymous:") || line.startsWith("Swap:")) &&
                   !line.endsWith(" 0 kB")) {
            all.last().isChanged = true;
        }
    }
    return all;
}

void advise(const Mapping &mapping, int advice)
{
    ::madvise(reinterpret_cast<void *>(mapping.start), mapping.end - mapping.start, advice);
}

} // namespace

QSet<QByteArray> mappedFiles()
{
    QSet<QByteArray> files;
    for (const Mapping &mapping : readMappings(mapsFile)) {
        files.insert(mapping.path);
    }
    files.remove(QByteArray());
    return files;
}

void giveBackFilePages(const QSet<QByteArray> &files)
{
    for (const Mapping &mapping : readMappings(mapsWithFigures)) {
        // Of others the changes would be lost.
        if (files.contains(mapping.path) && !mapping.isWritable && !mapping.isChanged) {
            advise(mapping, MADV_DONTNEED);
        }
    }
}

void readFilePagesAhead(const QSet<QByteArray> &files)
{
    for (const Mapping &mapping : readMappings(mapsFile)) {
        if (files.contains(mapping.path)) {
            advise(mapping, MADV_WILLNEED);
        }
    }
}

} // namespace lumenfold
