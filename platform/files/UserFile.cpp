#include "platform/files/UserFile.h"

#include "platform/image/EncodingPool.h"

#include <QFileInfo>
#include <QThreadPool>
#include <QUuid>

namespace lumenfold {
namespace {

/// In the same folder, hidden, and nobody else's.
QString scratchFor(const QFileInfo &target)
{
    return target.path() + QStringLiteral("/.") + QUuid::createUuid().toString(QUuid::WithoutBraces) +
           QStringLiteral(".part");
}

} // namespace

tl::expected<void, QString> writeUserFile(const QString &path, const FileWriter &write)
{
    tl::expected<void, QString> result =
        replaceFile(path, scratchFor(QFileInfo(path)), write, Sync::later, Readers::asUsual);
    if (result) {
        backgroundPool().start([path] {
            syncFiles({path}, [] {});
            syncFolder(QFileInfo(path).path());
        });
    }
    return result;
}

} // namespace lumenfold
