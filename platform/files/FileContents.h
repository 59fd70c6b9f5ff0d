#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <functional>
#include <optional>

/// Whole files that are read and written as one. Any thread; nothing here waits for anything but the disk.
class QFile;

namespace lumenfold {

/// All bytes of the file, or nothing when it is missing, unreadable, no ordinary file (a pipe would keep whoever opens
/// it waiting) or longer than `maximumBytes`.
[[nodiscard]] std::optional<QByteArray> readFile(const QString &path, qint64 maximumBytes);

/// When bytes are on the disk itself, and not only with the kernel, whence a power cut takes them.
enum class Sync {
    /// Before they have their name: a power cut, too, leaves the old bytes or the new ones.
    first,
    /// Not before syncFiles(); for a name under which there was nothing to lose.
    later,
};

/// Who may read a new file.
enum class Readers {
    user,
    /// Whoever may read any other new file of the user.
    asUsual,
};

/// Puts contents into a new file that is open and unbuffered. The error says why it cannot, in the system's words.
using FileWriter = std::function<tl::expected<void, QString>(QFile &)>;

/// Writes all of the bytes where the file stands.
[[nodiscard]] tl::expected<void, QString> writeBytes(QFile &file, QByteArrayView bytes);

/// Writes the first `count` bytes of `from`, which is open, unbuffered and at its beginning, inside the system where
/// that can be done: the bytes need no memory of this process, and where the file system can share them, no other room
/// on the disk.
[[nodiscard]] tl::expected<void, QString> copyBytes(QFile &from, qint64 count, QFile &to);

/// Writes all that is in the file of that path when it is called.
[[nodiscard]] FileWriter contentsOf(const QString &path);

/// Makes `path` a file of what is written. Whoever looks, also after this process was killed,
/// finds either what was there before or all of the new bytes. They go to `scratch` first, a name in the same
/// folder that is this caller's alone: whatever stands there is replaced, and after a kill part of the bytes may. When
/// it cannot be done (no such folder, no room), `path` is as it was and the error says why, in the system's words.
[[nodiscard]] tl::expected<void, QString> replaceFile(const QString &path, const QString &scratch,
                                                      const FileWriter &write, Sync when = Sync::first,
                                                      Readers readers = Readers::user);

/// The same with these bytes.
[[nodiscard]] tl::expected<void, QString> replaceFile(const QString &path, const QString &scratch, QByteArrayView bytes,
                                                      Sync when = Sync::first);

/// The same with the contents of `existing`, which gets a second name and takes no more room. False also where the file
/// system does not know such a thing.
[[nodiscard]] bool replaceFileByLink(const QString &path, const QString &scratch, const QString &existing);

/// Waits until the bytes of these files are on the disk. Calls `onProgress` after each. Best effort.
void syncFiles(const QStringList &paths, const std::function<void()> &onProgress);
/// Waits until the names in that folder are on the disk: what was renamed there stays so. Best effort.
void syncFolder(const QString &path);

/// Makes the folder, and those above it, and waits until they are on the disk; at once true when it is there.
bool makeFolder(const QString &path);

/// True when both are names of one existing file.
[[nodiscard]] bool areSameFile(const QString &path, const QString &other);

} // namespace lumenfold
