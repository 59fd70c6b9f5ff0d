#include "editor/bridge/Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::string_view signs = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr qsizetype groupSigns = 4;
constexpr qsizetype groupBytes = 3;
/// In the top byte, which the three bytes of a group leave free.
constexpr std::uint32_t isNoSign = 0xff000000;

/// For each place in a group, what each sign adds to the group's 24 bits.
using Places = std::array<std::array<std::uint32_t, 256>, groupSigns>;

constexpr Places places = [] {
    Places made{};
    for (std::size_t place = 0; place < made.size(); ++place) {
        made[place].fill(isNoSign);
        for (std::size_t value = 0; value < signs.size(); ++value) {
            made[place][static_cast<unsigned char>(signs[value])] = static_cast<std::uint32_t>(value)
                                                                    << (6 * (made.size() - 1 - place));
        }
    }
    return made;
}();

/// Decodes groups in place up to the first that is not four signs, such as the last one of most texts. How many.
qsizetype decodePlainGroups(unsigned char *text, qsizetype groups)
{
    unsigned char *to = text;
    const unsigned char *from = text;
    for (qsizetype group = 0; group < groups; ++group, from += groupSigns, to += groupBytes) {
        const std::uint32_t bits = places[0][from[0]] | places[1][from[1]] | places[2][from[2]] | places[3][from[3]];
        if ((bits & isNoSign) != 0) {
            return group;
        }
        to[0] = static_cast<unsigned char>(bits >> 16);
        to[1] = static_cast<unsigned char>(bits >> 8);
        to[2] = static_cast<unsigned char>(bits);
    }
    return groups;
}

} // namespace

std::optional<QByteArray> decodeBase64(QByteArray text)
{
    if (text.size() % groupSigns != 0) {
        return std::nullopt;
    }
    const qsizetype plain = decodePlainGroups(reinterpret_cast<unsigned char *>(text.data()), text.size() / groupSigns);
    const auto rest = QByteArray::fromBase64Encoding(
        text.sliced(plain * groupSigns), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!rest) {
        return std::nullopt;
    }
    text.truncate(plain * groupBytes);
    text += *rest;
    return text;
}

} // namespace lumenfold
