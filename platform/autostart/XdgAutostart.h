#pragma once

#include "platform/autostart/Autostart.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lumenfold {

/// Autostart files as all freedesktop desktops read them: the user's own goes before the system's of the same name. The
/// system's is never touched; where it starts the program, switching off puts a file of the user's in its place.
class XdgAutostart : public Autostart {
public:
    /// The folders with autostart files.
    struct Folders {
        QString ofUser;
        /// The most important first.
        QStringList ofSystem;
    };
    /// As the environment says.
    [[nodiscard]] static Folders standardFolders();
    /// The program that runs, by the path by which it is to be started the next time.
    [[nodiscard]] static QString presentProgram();

    static const QString fileName;

    XdgAutostart(Folders folders, QString program);

    [[nodiscard]] bool isEnabled() const override;
    [[nodiscard]] tl::expected<void, PlatformError> setEnabled(bool enabled) override;

private:
    [[nodiscard]] QString userFile() const;
    /// The system's file that counts where the user has none; nothing when there is none.
    [[nodiscard]] std::optional<QString> systemFile() const;
    [[nodiscard]] static bool fileStarts(const QString &path);
    [[nodiscard]] tl::expected<void, PlatformError> write(const QByteArray &contents) const;
    [[nodiscard]] tl::expected<void, PlatformError> removeUserFile() const;

    const Folders m_folders;
    const QString m_program;
};

} // namespace lumenfold
