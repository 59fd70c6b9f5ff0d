#pragma once

#include <QByteArray>

#include <optional>

namespace lumenfold {

/// What the text says in base64, filled up to whole groups of four signs as everybody writes it; nothing for any other
/// text. Decodes in place what nobody else holds, and in a fraction of the time that the toolkit takes: a picture of a
/// whole desktop is a text of twenty million signs.
[[nodiscard]] std::optional<QByteArray> decodeBase64(QByteArray text);

} // namespace lumenfold
