#include "platform/memory/FilePages.h"

#include <QByteArray>
#include <QFile>

#include <sys/mman.h>

#include <cstdio>

namespace lumenfold {

void giveBackFilePages(QByteArrayView part)
{
#ifdef MADV_PAGEOUT
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly)) {
        return;
    }
    const QByteArray all = maps.readAll();
    for (const QByteArray &line : all.split('\n')) {
        unsigned long start = 0;
        unsigned long end = 0;
        if (line.contains(part) && std::sscanf(line.constData(), "%lx-%lx", &start, &end) == 2) {
            ::madvise(reinterpret_cast<void *>(start), end - start, MADV_PAGEOUT);
        }
    }
#else
    Q_UNUSED(part);
#endif
}

} // namespace lumenfold
