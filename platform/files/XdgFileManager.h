#pragma once

#include "platform/files/FileManager.h"

namespace lumenfold {

/// The folders as the freedesktop user directories name them.
class XdgFileManager : public FileManager {
public:
    /// Nothing also when the Pictures folder is configured to be the home folder, which is how users do without one.
    [[nodiscard]] std::optional<QString> picturesDirectory() const override;
    [[nodiscard]] std::optional<QString> applicationSupportDirectory() const override;
    [[nodiscard]] std::optional<QString> cachesDirectory() const override;
    [[nodiscard]] QString homeDirectory() const override;
    [[nodiscard]] bool isDirectory(const QString &path) const override;
};

} // namespace lumenfold
