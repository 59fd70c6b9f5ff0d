#pragma once

#include "platform/geometry/Geometry.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace lumenfold {

class FileManager;
class Screens;
class UserDefaults;

/// Where "Edit" opens the online editor.
enum class EditorLocation {
    /// Inside the program's own editor window; stored as "macApp".
    macApp,
    /// In the user's web browser; stored as "browser".
    browser,
};

/// The one accessor of the user's settings, of the addresses derived from them, and of the card stack's measures.
///
/// Nothing is cached: each read goes to the store, each write straight to it. No accessor fails; what is unreadable,
/// empty or invalid in the store reads as its default. The address accessors may be called from any thread.
class AppConfig {
public:
    static const QString apiBaseOverrideKey;
    static const QString editorBaseOverrideKey;
    static const QString replaceCardOnEditKey;
    static const QString editorLocationKey;
    static const QString hideCardOnCopyOrSaveKey;
    static const QString saveDirectoryKey;

    /// Distance of the card column from the edges of the visible frame, in points. So are all measures below.
    static constexpr double previewMargin = 24;
    static constexpr double previewCardGap = 12;
    static constexpr double previewCardMinWidth = 140;
    static constexpr double previewCardMaxWidth = 1200;
    /// The transparent band around a stack card, in which its corner buttons live.
    static constexpr double previewCardHitMargin = 30;
    /// The same around a pinned card.
    static constexpr double previewPinnedHitMargin = 52;

    /// The collaborators must outlive this object.
    AppConfig(UserDefaults &defaults, const Screens &screens, const FileManager &files);

    [[nodiscard]] QUrl webBaseURL() const;
    [[nodiscard]] QUrl apiBaseURL() const;
    [[nodiscard]] QUrl editorBaseURL() const;
    [[nodiscard]] QUrl userEndpoint() const;
    [[nodiscard]] QUrl templatesEndpoint() const;
    [[nodiscard]] QUrl signedUrlEndpoint() const;
    [[nodiscard]] QUrl apiKeyURL() const;
    [[nodiscard]] QUrl studioImportURL(const QString &imageURL, const std::optional<QString> &templateId) const;
    [[nodiscard]] QUrl embeddedEditorURL(const std::optional<QString> &apiKey) const;

    /// Absolute paths of directories.
    [[nodiscard]] QString defaultSaveDirectory() const;
    /// The chosen folder while it exists, else the default; a choice that is missing is not forgotten.
    [[nodiscard]] QString saveDirectory() const;
    /// Whether a folder was chosen, missing or not.
    [[nodiscard]] bool hasChosenSaveDirectory() const;
    /// An absolute path.
    void chooseSaveDirectory(const QString &path);
    void forgetSaveDirectory();

    [[nodiscard]] bool replaceCardOnEdit() const;
    void setReplaceCardOnEdit(bool replace);
    [[nodiscard]] bool hideCardOnCopyOrSave() const;
    void setHideCardOnCopyOrSave(bool hide);
    [[nodiscard]] EditorLocation editorLocation() const;
    void setEditorLocation(EditorLocation location);

    /// How many cards the column holds before the oldest become a deck; at least 3.
    [[nodiscard]] int previewStackCapacity() const;
    /// The visible size of a stack card, 4:3.
    [[nodiscard]] Size previewCardDefaultSize() const;

private:
    UserDefaults &m_defaults;
    const Screens &m_screens;
    const FileManager &m_files;
};

} // namespace lumenfold
