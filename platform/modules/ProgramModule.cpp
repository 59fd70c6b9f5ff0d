#include "platform/modules/ProgramModule.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <QStringList>

namespace lumenfold {

tl::expected<QFunctionPointer, QString> functionOfModule(const QString &file, const char *name)
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    QStringList troubles;
    for (const QString &folder : {QStringLiteral("."), QStringLiteral(LUMENFOLD_MODULE_FOLDER)}) {
        QLibrary module(programFolder.filePath(folder + u'/' + file));
        if (const QFunctionPointer found = module.resolve(name)) {
            return found;
        }
        troubles.append(module.errorString());
    }
    return tl::unexpected(troubles.join(u' '));
}

} // namespace lumenfold
