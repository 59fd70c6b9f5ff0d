#include "platform/autostart/XdgAutostart.h"

#include "platform/autostart/AutostartEntry.h"
#include "platform/files/FileContents.h"
#include "platform/files/UserFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace lumenfold {
namespace {

/// What desktops show of it in their lists. The name of a product is the same in every language.
const QString entryName = QStringLiteral("LumenFold");
const QString iconName = QStringLiteral("org.lumenfold.LumenFold");

/// Nobody writes a longer one.
constexpr qint64 maximumBytes = 64 * 1024;

/// Also for a link that leads nowhere, and for what is no file: it stands before the system's all the same.
bool isThere(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

bool isInstalled(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

tl::unexpected<PlatformError> failure(const QString &what, const QString &why)
{
    return tl::unexpected(
        PlatformError{.domain = QStringLiteral("autostart"), .description = what + QStringLiteral(": ") + why});
}

} // namespace

const QString XdgAutostart::fileName = QStringLiteral("org.lumenfold.LumenFold.desktop");

XdgAutostart::Folders XdgAutostart::standardFolders()
{
    const QString autostart = QStringLiteral("/autostart");
    QStringList all = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &folder : all) {
        folder += autostart;
    }
    const QString ofUser = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + autostart;
    all.removeAll(ofUser);
    return {.ofUser = ofUser, .ofSystem = all};
}

QString XdgAutostart::presentProgram()
{
    // The file that the user has, where the program runs out of one that is only there while it runs.
    const QString image = qEnvironmentVariable("APPIMAGE");
    return QDir::isAbsolutePath(image) ? image : QCoreApplication::applicationFilePath();
}

XdgAutostart::XdgAutostart(Folders folders, QString program)
    : m_folders(std::move(folders)), m_program(std::move(program))
{
}

bool XdgAutostart::isEnabled() const
{
    if (isThere(userFile())) {
        return fileStarts(userFile());
    }
    const std::optional<QString> ofSystem = systemFile();
    return ofSystem && fileStarts(*ofSystem);
}

tl::expected<void, PlatformError> XdgAutostart::setEnabled(bool enabled)
{
    if (enabled == isEnabled()) {
        return {};
    }
    const std::optional<QString> ofSystem = systemFile();
    const bool systemStarts = ofSystem && fileStarts(*ofSystem);
    if (enabled == systemStarts) {
        return removeUserFile();
    }
    return write(enabled ? autostartEntry::starting(m_program, entryName, iconName)
                         : autostartEntry::startingNothing(entryName));
}

QString XdgAutostart::userFile() const
{
    return QDir(m_folders.ofUser).filePath(fileName);
}

std::optional<QString> XdgAutostart::systemFile() const
{
    for (const QString &folder : m_folders.ofSystem) {
        const QString path = QDir(folder).filePath(fileName);
        if (isThere(path)) {
            return path;
        }
    }
    return std::nullopt;
}

bool XdgAutostart::fileStarts(const QString &path)
{
    const std::optional<QByteArray> contents = readFile(path, maximumBytes);
    return contents &&
           autostartEntry::starts(
               *contents, {.desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts),
                           .isInstalled = isInstalled});
}

tl::expected<void, PlatformError> XdgAutostart::write(const QByteArray &contents) const
{
    if (!QDir().mkpath(m_folders.ofUser)) {
        return failure(m_folders.ofUser, QStringLiteral("cannot be made"));
    }
    const auto written = writeUserFile(userFile(), [&contents](QFile &file) { return writeBytes(file, contents); });
    if (!written) {
        return failure(userFile(), written.error());
    }
    return {};
}

tl::expected<void, PlatformError> XdgAutostart::removeUserFile() const
{
    QFile file(userFile());
    if (!file.remove()) {
        return failure(userFile(), file.errorString());
    }
    return {};
}

} // namespace lumenfold
