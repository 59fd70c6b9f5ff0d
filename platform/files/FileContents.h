#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Whole files that are read and written as one. Any thread; nothing here waits for anything but the disk.
namespace lumenfold {

/// All bytes of the file, or nothing when it is missing, unreadable, no ordinary file (a pipe would keep whoever opens
/// it waiting) or longer than `maximumBytes`.
[[nodiscard]] std::optional<QByteArray> readFile(const QString &path, qint64 maximumBytes);

/// Makes `path` a file of these bytes that only the user may read. Whoever looks, also after this process was killed,
/// finds either what was there before or all of the new bytes. They are written to `scratch` first, a name in the same
/// folder that is this caller's alone: whatever stands there is replaced, and after a kill part of the bytes may. False
/// when it cannot be done (no such folder, no room); `path` is then as it was.
[[nodiscard]] bool replaceFile(const QString &path, const QString &scratch, QByteArrayView bytes);

/// The same with the contents of `existing`, which gets a second name and takes no more room. False also where the file
/// system does not know such a thing.
[[nodiscard]] bool replaceFileByLink(const QString &path, const QString &scratch, const QString &existing);

/// True when both are names of one existing file.
[[nodiscard]] bool areSameFile(const QString &path, const QString &other);

} // namespace lumenfold
