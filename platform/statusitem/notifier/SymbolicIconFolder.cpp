#include "platform/statusitem/notifier/SymbolicIconFolder.h"

#include "platform/files/FileContents.h"

#include <QCryptographicHash>
#include <QDir>

#include <algorithm>
#include <array>
#include <utility>

namespace lumenfold {
namespace {

/// Panels read it at any time, so it is whole or not there.
bool put(const QString &path, const QByteArray &drawing)
{
    return readFile(path, drawing.size()) == drawing ||
           replaceFile(path, path + QStringLiteral(".new"), drawing, Sync::later).has_value();
}

} // namespace

SymbolicIconFolder::SymbolicIconFolder(QString path) : m_path(std::move(path)) {}

QString SymbolicIconFolder::nameOf(const StatusIcon &icon, const QColor &templateColor) const
{
    const QByteArray drawing = symbolicDrawing(icon, templateColor);
    if (m_path.isEmpty() || drawing.isEmpty()) {
        return {};
    }
    // Panels remember what they read under a name, so another drawing has another one.
    constexpr qsizetype digits = 8;
    const QByteArray digest = QCryptographicHash::hash(drawing, QCryptographicHash::Sha256).toHex().first(digits);
    const QString name = QStringLiteral("lumenfold-%1-symbolic").arg(QString::fromLatin1(digest));
    const QDir folder(m_path);
    // Some look right there, some as in any theme.
    const std::array places{QStringLiteral("."), QStringLiteral("hicolor/scalable/status")};
    const bool isThere = std::ranges::all_of(places, [&](const QString &place) {
        const QString file = folder.filePath(place + u'/' + name + QStringLiteral(".svg"));
        return folder.mkpath(place) && put(file, drawing);
    });
    return isThere ? name : QString();
}

} // namespace lumenfold
