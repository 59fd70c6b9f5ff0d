#include "platform/statusitem/notifier/SymbolicIconFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <utility>

namespace lumenfold {
namespace {

bool hasContents(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() == contents.size() && file.readAll() == contents;
}

bool write(const QString &path, const QByteArray &contents)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.commit();
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
        return hasContents(file, drawing) || (folder.mkpath(place) && write(file, drawing));
    });
    return isThere ? name : QString();
}

} // namespace lumenfold
