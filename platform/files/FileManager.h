#pragma once

#include <QString>

#include <optional>

namespace lumenfold {

/// The user's folders and what stands in them.
class FileManager {
public:
    FileManager() = default;
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;
    virtual ~FileManager() = default;

    /// The user's Pictures folder (XDG), an absolute path; nothing when the user has none configured.
    [[nodiscard]] virtual std::optional<QString> picturesDirectory() const = 0;
    /// Where programs keep what they need from one run to the next (XDG data), an absolute path; nothing when there is
    /// no such place.
    [[nodiscard]] virtual std::optional<QString> applicationSupportDirectory() const = 0;
    /// Where programs keep what they can do without (XDG cache), an absolute path; nothing when there is no such place.
    [[nodiscard]] virtual std::optional<QString> cachesDirectory() const = 0;
    [[nodiscard]] virtual QString homeDirectory() const = 0;
    /// True for an existing directory, also through a link.
    [[nodiscard]] virtual bool isDirectory(const QString &path) const = 0;
};

} // namespace lumenfold
