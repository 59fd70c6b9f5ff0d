/// Feeds the reader of update feeds, as if somebody had got hold of the key. Whatever comes, what is read leads to
/// secure servers only, and versions are in one order.
#include "platform/updates/Appcast.h"
#include "platform/updates/FeedSignature.h"
#include "platform/updates/SoftwareVersion.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace lumenfold;

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

bool isSecure(const QUrl &address)
{
    return address.isValid() && address.scheme() == QStringView(u"https") && !address.host().isEmpty();
}

void compare(const std::vector<AppcastItem> &items)
{
    std::vector<SoftwareVersion> versions;
    for (const AppcastItem &item : items) {
        if (const auto version = SoftwareVersion::parse(item.version); version && versions.size() < 20) {
            versions.push_back(*version);
        }
    }
    std::ranges::stable_sort(versions, [](const auto &one, const auto &other) { return one < other; });
    for (std::size_t one = 0; one < versions.size(); ++one) {
        for (std::size_t other = one; other < versions.size(); ++other) {
            require(versions[one] <= versions[other]);
            require((versions[one] == versions[other]) == (versions[other] == versions[one]));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    // Nobody has signed it with this key.
    require(!genuinePart(bytes, QByteArray(ed25519PublicKeyBytes, '\x2a')));
    if (const auto items = readAppcast(bytes)) {
        require(std::ranges::all_of(*items, [](const AppcastItem &item) {
            return isSecure(item.page) && isSecure(item.file) && !item.version.isEmpty() &&
                   item.notes.size() <= 65536 && item.length.value_or(0) >= 0;
        }));
        compare(*items);
    }
    return 0;
}
