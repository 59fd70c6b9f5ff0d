#include "platform/screens/DisplayIdentity.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>

namespace lumenfold {
namespace {

/// FNV-1a: qHash may be seeded differently in every run.
DisplayID stableHash(const QByteArray &bytes)
{
    DisplayID hash = 2166136261U;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 16777619U;
    }
    return hash;
}

DisplayID hashOf(const DisplayIdentity &screen)
{
    QStringList parts{screen.manufacturer, screen.model, screen.serialNumber};
    if (screen.serialNumber.isEmpty()) {
        parts.append(screen.name);
    }
    return stableHash(parts.join(QChar::Null).toUtf8());
}

} // namespace

std::vector<DisplayID> displayIDsFor(const std::vector<DisplayIdentity> &screens)
{
    std::vector<DisplayID> ids;
    for (const DisplayIdentity &screen : screens) {
        DisplayID id = hashOf(screen);
        while (id == 0 || std::ranges::find(ids, id) != ids.end()) {
            ++id;
        }
        ids.push_back(id);
    }
    return ids;
}

} // namespace lumenfold
