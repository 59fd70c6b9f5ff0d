#pragma once

#include "shortcuts/ShortcutRecorder.h"

#include <QScrollArea>

class QCheckBox;

namespace lumenfold {

class AppConfig;
class Autostart;
class ChoiceGroup;
class NotificationCenter;
class OpenPanel;
class SaveLocationRow;
class SettingsSection;

/// The page "General". Every control writes what the user does at once, and shows what is stored when the page comes
/// into sight.
class GeneralSettingsView : public QScrollArea {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        AppConfig &config;
        ShortcutRecorder::Collaborators recorder;
        NotificationCenter &notifications;
        OpenPanel &openPanel;
        Autostart &autostart;
    };

    explicit GeneralSettingsView(const Collaborators &collaborators, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] SettingsSection *makeShortcuts();
    [[nodiscard]] SettingsSection *makeSaveLocation();
    [[nodiscard]] SettingsSection *makeCards();
    [[nodiscard]] SettingsSection *makeEditing();
    [[nodiscard]] SettingsSection *makeInAppEditor();
    [[nodiscard]] SettingsSection *makeStartup();
    void read();
    void colorIndicators();
    void setStartsAtLogin(bool starts);

    const Collaborators m_with;
    SaveLocationRow *m_saveLocation = nullptr;
    QCheckBox *m_hideCard = nullptr;
    ChoiceGroup *m_editorLocation = nullptr;
    ChoiceGroup *m_replaceCard = nullptr;
    QCheckBox *m_startAtLogin = nullptr;
};

} // namespace lumenfold
