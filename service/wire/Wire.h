#pragma once

#include "service/LumenfoldTemplate.h"
#include "service/LumenfoldUser.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <vector>

/// The service's JSON. What it sends is read strictly where a value is needed and generously elsewhere: members that
/// nobody asked for are ignored, and of two members with one name the last counts. Everything else than UTF-8 JSON, or
/// a nesting deeper than the library's 1024, cannot be read. Text with half a character in it is no text. Any thread.
namespace lumenfold {

/// {"user": {"email": …, "firstname": …, "tier": …}}; the latter two may be missing or null. Nothing if it is not that.
[[nodiscard]] std::optional<LumenfoldUser> readUser(const QByteArray &json);

/// {"templates": [{"_id": …, "name": …, "previewUrl": …, "editedAt": …}, …]}. Nothing if it is not that, or a single
/// template has no "_id" that is text; one without a name gets one, and what else is missing or no text is left out.
[[nodiscard]] std::optional<std::vector<LumenfoldTemplate>> readTemplates(const QByteArray &json);

/// {"url": …}. Nothing if it is not that, or no valid absolute address.
[[nodiscard]] std::optional<QUrl> readSignedUrl(const QByteArray &json);

/// What the service wants to know before a PNG of that name is uploaded.
[[nodiscard]] QByteArray signedUrlRequestBody(const QString &fileName);

} // namespace lumenfold
