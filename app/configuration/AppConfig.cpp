#include "app/configuration/AppConfig.h"

#include "app/configuration/Addresses.h"
#include "app/configuration/BuiltInAddresses.h"
#include "app/configuration/CardMeasures.h"
#include "platform/defaults/UserDefaults.h"
#include "platform/files/FileManager.h"
#include "platform/screens/Screens.h"

#include <QDir>

namespace lumenfold {
namespace {

constexpr QStringView macAppLocation = u"macApp";
constexpr QStringView browserLocation = u"browser";

std::optional<double> visibleHeight(const Screens &screens)
{
    const std::optional<Screen> screen = screens.main();
    return screen ? std::optional(screen->visibleFrame.height) : std::nullopt;
}

QUrl orPlain(const QUrl &url, const QUrl &plain)
{
    return url.isValid() ? url : plain;
}

} // namespace

const QString AppConfig::apiBaseOverrideKey = QStringLiteral("LumenFold.apiBaseURLOverride");
const QString AppConfig::editorBaseOverrideKey = QStringLiteral("LumenFold.editorBaseURLOverride");
const QString AppConfig::replaceCardOnEditKey = QStringLiteral("LumenFold.replaceCardOnEdit");
const QString AppConfig::editorLocationKey = QStringLiteral("LumenFold.editorLocation");
const QString AppConfig::hideCardOnCopyOrSaveKey = QStringLiteral("LumenFold.hideCardOnCopyOrSave");
const QString AppConfig::saveDirectoryKey = QStringLiteral("LumenFold.saveDirectory");

AppConfig::AppConfig(UserDefaults &defaults, const Screens &screens, const FileManager &files)
    : m_defaults(defaults), m_screens(screens), m_files(files)
{
}

QUrl AppConfig::webBaseURL() const
{
    return builtInWebBaseURL();
}

QUrl AppConfig::apiBaseURL() const
{
    return overridingURL(m_defaults.string(apiBaseOverrideKey)).value_or(builtInApiBaseURL());
}

QUrl AppConfig::editorBaseURL() const
{
    return overridingURL(m_defaults.string(editorBaseOverrideKey)).value_or(webBaseURL());
}

QUrl AppConfig::userEndpoint() const
{
    return appendingPathComponent(apiBaseURL(), QStringLiteral("/v1/user"));
}

QUrl AppConfig::templatesEndpoint() const
{
    return appendingPathComponent(apiBaseURL(), QStringLiteral("/v1/templates"));
}

QUrl AppConfig::signedUrlEndpoint() const
{
    return appendingPathComponent(apiBaseURL(), QStringLiteral("/v1/user/upload/signed-url"));
}

QUrl AppConfig::apiKeyURL() const
{
    const QUrl plain = appendingPathComponent(webBaseURL(), QStringLiteral("/dashboard/account"));
    QUrl url = plain;
    url.setFragment(QStringLiteral("api-key"));
    return orPlain(url, plain);
}

QUrl AppConfig::studioImportURL(const QString &imageURL, const std::optional<QString> &templateId) const
{
    const QUrl plain = appendingPathComponent(webBaseURL(), QStringLiteral("/studio"));
    std::vector<std::pair<QString, QString>> items{{QStringLiteral("src"), imageURL}};
    if (templateId) {
        items.emplace_back(QStringLiteral("id"), *templateId);
    }
    return orPlain(withQueryItems(plain, items), withQueryItems(plain, {}));
}

QUrl AppConfig::embeddedEditorURL(const std::optional<QString> &apiKey) const
{
    const QUrl plain =
        withQueryItems(appendingPathComponent(editorBaseURL(), QStringLiteral("/integration/electron")), {});
    if (!apiKey || apiKey->isEmpty()) {
        return plain;
    }
    return orPlain(withQueryItems(plain, {{QStringLiteral("apiKey"), *apiKey}}), plain);
}

QString AppConfig::defaultSaveDirectory() const
{
    return m_files.picturesDirectory().value_or(m_files.homeDirectory());
}

QString AppConfig::saveDirectory() const
{
    const std::optional<QString> chosen = m_defaults.string(saveDirectoryKey);
    // A relative path would mean another folder each time the program is started from somewhere else.
    if (chosen && QDir::isAbsolutePath(*chosen) && m_files.isDirectory(*chosen)) {
        return *chosen;
    }
    return defaultSaveDirectory();
}

bool AppConfig::hasChosenSaveDirectory() const
{
    return m_defaults.contains(saveDirectoryKey);
}

void AppConfig::chooseSaveDirectory(const QString &path)
{
    m_defaults.setString(saveDirectoryKey, path);
}

void AppConfig::forgetSaveDirectory()
{
    m_defaults.remove(saveDirectoryKey);
}

bool AppConfig::replaceCardOnEdit() const
{
    return m_defaults.boolean(replaceCardOnEditKey);
}

void AppConfig::setReplaceCardOnEdit(bool replace)
{
    m_defaults.setBoolean(replaceCardOnEditKey, replace);
}

bool AppConfig::hideCardOnCopyOrSave() const
{
    return m_defaults.boolean(hideCardOnCopyOrSaveKey);
}

void AppConfig::setHideCardOnCopyOrSave(bool hide)
{
    m_defaults.setBoolean(hideCardOnCopyOrSaveKey, hide);
}

EditorLocation AppConfig::editorLocation() const
{
    return m_defaults.string(editorLocationKey) == browserLocation ? EditorLocation::browser : EditorLocation::macApp;
}

void AppConfig::setEditorLocation(EditorLocation location)
{
    const QStringView value = location == EditorLocation::browser ? browserLocation : macAppLocation;
    m_defaults.setString(editorLocationKey, value.toString());
}

int AppConfig::previewStackCapacity() const
{
    return stackCapacity(visibleHeight(m_screens));
}

Size AppConfig::previewCardDefaultSize() const
{
    return defaultCardSize(visibleHeight(m_screens));
}

} // namespace lumenfold
