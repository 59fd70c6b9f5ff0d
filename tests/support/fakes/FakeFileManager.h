#pragma once

#include "platform/files/FileManager.h"

#include <QSet>

namespace lumenfold::test {

/// Folders that exist only by name.
class FakeFileManager : public FileManager {
public:
    [[nodiscard]] std::optional<QString> picturesDirectory() const override;
    [[nodiscard]] std::optional<QString> applicationSupportDirectory() const override;
    [[nodiscard]] std::optional<QString> cachesDirectory() const override;
    [[nodiscard]] QString homeDirectory() const override;
    [[nodiscard]] bool isDirectory(const QString &path) const override;

    std::optional<QString> pictures = QStringLiteral("/home/someone/Pictures");
    std::optional<QString> applicationSupport = QStringLiteral("/home/someone/.local/share");
    std::optional<QString> caches = QStringLiteral("/home/someone/.cache");
    QString home = QStringLiteral("/home/someone");
    /// What isDirectory() says yes to, beside the two above.
    QSet<QString> directories;
};

} // namespace lumenfold::test
