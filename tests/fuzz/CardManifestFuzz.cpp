/// Feeds the reader of the card list, which lies in a folder where anybody may write. Whatever it holds, what is read
/// can be written and read again, and no id leads out of the card folder.
#include "cards/CardFileNames.h"
#include "cards/PersistedCardCoding.h"

#include <algorithm>
#include <cmath>
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

/// Half a character cannot be written.
bool isText(const PersistedCard &card)
{
    return card.id.isValidUtf16() && card.editorSourceId.value_or(QString()).isValidUtf16();
}

void requireHarmless(const PersistedCard &card)
{
    if (card.frame) {
        require(std::isfinite(card.frame->x) && std::isfinite(card.frame->y));
        require(std::isfinite(card.frame->width) && std::isfinite(card.frame->height));
    }
    for (const auto &name : {imageFileName(card.id), editorSourceImageFileName(card.id)}) {
        if (name) {
            const QByteArray bytes = name->toUtf8();
            require(!bytes.contains('/') && !bytes.contains('\0') && bytes.size() <= 255);
            require(isImageFileName(*name) && bytes != "." && bytes != "..");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto cards = decodePersistedCards(bytes);
    if (!cards) {
        return 0;
    }
    std::ranges::for_each(*cards, requireHarmless);
    const auto written = encodePersistedCards(*cards);
    require(written.has_value());
    if (std::ranges::all_of(*cards, isText)) {
        require(decodePersistedCards(*written) == cards);
    }
    return 0;
}
