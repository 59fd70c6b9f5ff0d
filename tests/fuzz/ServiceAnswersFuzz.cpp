/// Feeds the readers of the service's answers. Whatever comes, what is read is whole text, and an address that is read
/// is one to the character.
#include "service/wire/Wire.h"

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

bool isWhole(const std::optional<QString> &text)
{
    return !text || text->isValidUtf16();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto user = readUser(json)) {
        require(isWhole(user->email) && isWhole(user->firstname) && isWhole(user->tier));
    }
    if (const auto templates = readTemplates(json)) {
        require(std::ranges::all_of(*templates, [](const LumenfoldTemplate &one) {
            return isWhole(one.id) && isWhole(one.name) && isWhole(one.previewUrl) && isWhole(one.editedAt);
        }));
    }
    if (const auto url = readSignedUrl(json)) {
        require(url->isValid() && !url->scheme().isEmpty());
        // What is sent of it.
        const QUrl sent = url->adjusted(QUrl::RemoveFragment);
        require(QUrl::fromEncoded(sent.toEncoded()) == sent);
    }
    return 0;
}
