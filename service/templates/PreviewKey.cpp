#include "service/templates/PreviewKey.h"

#include <QHashFunctions>

namespace lumenfold {

std::size_t qHash(const PreviewKey &key, std::size_t seed) noexcept
{
    return qHashMulti(seed, key.address, key.version);
}

std::optional<PreviewKey> previewKey(const LumenfoldTemplate &of)
{
    if (!of.previewUrl) {
        return std::nullopt;
    }
    QUrl address(*of.previewUrl, QUrl::StrictMode);
    const bool isOfServer = address.scheme() == u"http" || address.scheme() == u"https";
    if (!address.isValid() || !isOfServer || address.host().isEmpty()) {
        return std::nullopt;
    }
    address.setUserInfo({});
    address.setFragment({});
    return PreviewKey{.address = QString::fromLatin1(address.toEncoded()), .version = of.editedAt.value_or(QString())};
}

} // namespace lumenfold
