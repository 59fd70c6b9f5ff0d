#include "platform/updates/SoftwareVersion.h"

#include <algorithm>

namespace lumenfold {
namespace {

constexpr qsizetype longestText = 100;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isNumber(QStringView text)
{
    return !text.isEmpty() && std::ranges::all_of(text, isDigit);
}

/// Of the name of a preliminary version or of a build.
bool isNamePart(QStringView text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar character) {
        return isDigit(character) || (character >= u'a' && character <= u'z') ||
               (character >= u'A' && character <= u'Z') || character == u'-';
    });
}

QString withoutLeadingZeros(QStringView number)
{
    while (number.startsWith(u'0')) {
        number = number.mid(1);
    }
    return number.toString();
}

std::weak_ordering fromSign(qsizetype sign)
{
    return sign <=> 0;
}

/// Both without zeros at their beginning.
std::weak_ordering compareNumbers(QStringView one, QStringView other)
{
    if (one.size() != other.size()) {
        return one.size() <=> other.size();
    }
    return fromSign(one.compare(other));
}

std::weak_ordering compareNameParts(const QString &one, const QString &other)
{
    const bool isOneNumber = isNumber(one);
    const bool isOtherNumber = isNumber(other);
    if (isOneNumber && isOtherNumber) {
        return compareNumbers(withoutLeadingZeros(one), withoutLeadingZeros(other));
    }
    if (isOneNumber != isOtherNumber) {
        return isOneNumber ? std::weak_ordering::less : std::weak_ordering::greater;
    }
    return fromSign(one.compare(other));
}

/// The text before the first such character, which goes from `rest` together with it; `rest` is empty if there is none.
QStringView takeUntil(QChar separator, QStringView &rest)
{
    const qsizetype end = rest.indexOf(separator);
    const QStringView taken = end < 0 ? rest : rest.left(end);
    rest = end < 0 ? QStringView() : rest.mid(end + 1);
    return taken;
}

} // namespace

std::optional<SoftwareVersion> SoftwareVersion::parse(QStringView text)
{
    if (text.size() > longestText) {
        return std::nullopt;
    }
    if (text.startsWith(u'v') || text.startsWith(u'V')) {
        text = text.mid(1);
    }
    const bool hasBuild = text.contains(u'+');
    QStringView build = text;
    QStringView preliminary = takeUntil(u'+', build);
    const bool hasPreliminary = preliminary.contains(u'-');
    const QStringView numbers = takeUntil(u'-', preliminary);

    SoftwareVersion version;
    for (const QStringView number : numbers.split(u'.')) {
        if (!isNumber(number)) {
            return std::nullopt;
        }
        version.m_numbers.append(withoutLeadingZeros(number));
    }
    if (hasPreliminary) {
        for (const QStringView part : preliminary.split(u'.')) {
            if (!isNamePart(part)) {
                return std::nullopt;
            }
            version.m_preliminary.append(part.toString());
        }
    }
    if (hasBuild && !std::ranges::all_of(build.split(u'.'), isNamePart)) {
        return std::nullopt;
    }
    return version;
}

std::weak_ordering operator<=>(const SoftwareVersion &one, const SoftwareVersion &other)
{
    const qsizetype count = std::max(one.m_numbers.size(), other.m_numbers.size());
    for (qsizetype index = 0; index < count; ++index) {
        // A missing number reads as an empty one, which is what a zero is without its zeros.
        const auto order = compareNumbers(one.m_numbers.value(index), other.m_numbers.value(index));
        if (order != 0) {
            return order;
        }
    }
    if (one.isPreliminary() != other.isPreliminary()) {
        return one.isPreliminary() ? std::weak_ordering::less : std::weak_ordering::greater;
    }
    const qsizetype shared = std::min(one.m_preliminary.size(), other.m_preliminary.size());
    for (qsizetype index = 0; index < shared; ++index) {
        const auto order = compareNameParts(one.m_preliminary[index], other.m_preliminary[index]);
        if (order != 0) {
            return order;
        }
    }
    return one.m_preliminary.size() <=> other.m_preliminary.size();
}

} // namespace lumenfold
