#include "platform/secrets/KeyringModule.h"

#include "platform/modules/ProgramModule.h"

#include <QDebug>

namespace lumenfold {
namespace {

using MakeKeyring = Keyring *();

MakeKeyring *load()
{
    const auto found = functionOfModule(QStringLiteral("lumenfold_keyring.so"), "lumenfoldMakeKeyring");
    if (!found) {
        qWarning().noquote().nospace() << "LumenFold: no keyring can be used: " << found.error();
        return nullptr;
    }
    return reinterpret_cast<MakeKeyring *>(*found);
}

} // namespace

std::unique_ptr<Keyring> makeKeyringOfModule()
{
    static MakeKeyring *const make = load();
    return std::unique_ptr<Keyring>(make != nullptr ? make() : nullptr);
}

} // namespace lumenfold
