#pragma once

#include "platform/files/FileContents.h"

#include <QString>

#include <tl/expected.hpp>

namespace lumenfold {

/// Makes `path` a file of what is written, with the mode of any other new file of the user. Whoever looks finds what
/// was there before or all of the new bytes; when it cannot be done, `path` is as it was and the error says why, in the
/// system's words. The bytes get to the disk itself afterwards, from a thread of the background pool: waiting for that
/// takes as long as all the rest. Any thread.
[[nodiscard]] tl::expected<void, QString> writeUserFile(const QString &path, const FileWriter &write);

} // namespace lumenfold
