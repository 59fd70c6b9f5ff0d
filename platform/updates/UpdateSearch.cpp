#include "platform/updates/UpdateSearch.h"

#include "platform/updates/Appcast.h"
#include "platform/updates/FeedSignature.h"
#include "platform/updates/SoftwareVersion.h"

#include <gnu/libc-version.h>

#include <utility>

namespace lumenfold {
namespace {

bool runsOn(const AppcastItem &item, const std::optional<SoftwareVersion> &system)
{
    if (item.minimumSystemVersion.isEmpty()) {
        return true;
    }
    const auto minimum = SoftwareVersion::parse(item.minimumSystemVersion);
    return minimum && system && *system >= *minimum;
}

} // namespace

tl::expected<std::optional<AvailableUpdate>, UpdateCheckError> updateIn(const QByteArray &feed,
                                                                        const UpdateTerms &terms)
{
    if (terms.publicKey.isEmpty()) {
        return tl::unexpected(UpdateCheckError::withoutKey);
    }
    const std::optional<QByteArray> genuine = genuinePart(feed, terms.publicKey);
    if (!genuine) {
        return tl::unexpected(UpdateCheckError::untrusted);
    }
    std::optional<std::vector<AppcastItem>> items = readAppcast(*genuine);
    if (!items) {
        return tl::unexpected(UpdateCheckError::unreadable);
    }

    std::optional<SoftwareVersion> newest = SoftwareVersion::parse(terms.version);
    const std::optional<SoftwareVersion> system = SoftwareVersion::parse(terms.systemVersion);
    std::optional<AvailableUpdate> found;
    for (AppcastItem &item : *items) {
        const auto version = SoftwareVersion::parse(item.version);
        if (version && (!newest || *version > *newest) && runsOn(item, system)) {
            newest = version;
            found = AvailableUpdate{.version = std::move(item.version),
                                    .title = std::move(item.title),
                                    .notes = std::move(item.notes),
                                    .page = std::move(item.page)};
        }
    }
    return found;
}

QString systemVersion()
{
    return QString::fromLatin1(gnu_get_libc_version());
}

} // namespace lumenfold
