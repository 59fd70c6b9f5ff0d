#include "platform/secrets/KeyringModule.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QLibrary>

namespace lumenfold {
namespace {

using MakeKeyring = Keyring *();

MakeKeyring *load()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    QString trouble;
    for (const QString &folder : {QStringLiteral("."), QStringLiteral(LUMENFOLD_MODULE_FOLDER)}) {
        QLibrary module(programFolder.filePath(folder + QStringLiteral("/lumenfold_keyring.so")));
        // It stays loaded; its libraries could not be unloaded anyway.
        if (auto *found = module.resolve("lumenfoldMakeKeyring")) {
            return reinterpret_cast<MakeKeyring *>(found);
        }
        trouble = module.errorString();
    }
    qWarning().noquote().nospace() << "LumenFold: no keyring can be used: " << trouble;
    return nullptr;
}

} // namespace

std::unique_ptr<Keyring> makeKeyringOfModule()
{
    static MakeKeyring *const make = load();
    return std::unique_ptr<Keyring>(make != nullptr ? make() : nullptr);
}

} // namespace lumenfold
