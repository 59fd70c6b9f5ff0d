#include "settings/GeneralSettingsView.h"

#include "app/configuration/AppConfig.h"
#include "platform/alerts/Alerts.h"
#include "platform/autostart/Autostart.h"
#include "settings/ChoiceGroup.h"
#include "settings/SaveLocationRow.h"
#include "settings/SettingsSection.h"
#include "settings/ShortcutRow.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDebug>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <utility>

namespace lumenfold {
namespace {

// Points.
constexpr int margin = 20;
constexpr int sectionSpacing = 6;

/// Not as the user would: nothing is stored. Assistive technologies toggle without a click, so that whatever else
/// toggles a box is stored.
void showChecked(QCheckBox *box, bool isOn)
{
    const QSignalBlocker blocker(box);
    box->setChecked(isOn);
}

} // namespace

GeneralSettingsView::GeneralSettingsView(const Collaborators &collaborators, QWidget *parent)
    : QScrollArea(parent), m_with(collaborators)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    // The keyboard goes to the controls, and the page moves along with it.
    setFocusPolicy(Qt::NoFocus);

    auto *page = new QWidget;
    // A click beside the controls takes the keyboard from a button that records.
    page->setFocusPolicy(Qt::ClickFocus);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(sectionSpacing);
    bool isFirst = true;
    for (SettingsSection *section :
         {makeShortcuts(), makeSaveLocation(), makeCards(), makeEditing(), makeInAppEditor(), makeStartup()}) {
        if (!std::exchange(isFirst, false)) {
            column->addWidget(new SettingsDivider(page));
        }
        column->addWidget(section);
    }
    column->addStretch(1);
    setWidget(page);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    colorIndicators();
    read();
}

SettingsSection *GeneralSettingsView::makeShortcuts()
{
    auto *section = new SettingsSection(tr("Shortcuts"));
    section->addCaption(tr("Click a shortcut, then press a new key combination (must include ⌘, ⌥, ⌃, or ⇧)."),
                        //: What the four symbols mean on the keyboard
                        tr("⌘ is Super, ⌥ is Alt, ⌃ is Ctrl, ⇧ is Shift"));
    const auto add = [&](ShortcutStore::Action action, const QString &label) {
        section->addRow(new ShortcutRow(action, label, m_with.recorder, m_with.notifications));
    };
    add(ShortcutStore::Action::fullScreen, tr("Capture full screen"));
    add(ShortcutStore::Action::area, tr("Capture area"));
    add(ShortcutStore::Action::lastArea, tr("Capture last area"));
    add(ShortcutStore::Action::undo, tr("Undo dismissed cards"));
    return section;
}

SettingsSection *GeneralSettingsView::makeSaveLocation()
{
    auto *section = new SettingsSection(tr("Save location"));
    m_saveLocation = new SaveLocationRow(m_with.config, m_with.openPanel);
    section->addRow(m_saveLocation);
    return section;
}

SettingsSection *GeneralSettingsView::makeCards()
{
    auto *section = new SettingsSection(tr("Cards"));
    m_hideCard = new QCheckBox(tr("Hide the card after Copy or Save"));
    connect(m_hideCard, &QCheckBox::toggled, this, [this](bool isOn) { m_with.config.setHideCardOnCopyOrSave(isOn); });
    section->addRow(m_hideCard);
    return section;
}

SettingsSection *GeneralSettingsView::makeEditing()
{
    auto *section = new SettingsSection(tr("Edit screenshot"));
    m_editorLocation =
        new ChoiceGroup(tr("Open the editor in"), {{static_cast<int>(EditorLocation::macApp), tr("LumenFold Mac app")},
                                                   {static_cast<int>(EditorLocation::browser), tr("Browser")}});
    connect(m_editorLocation, &ChoiceGroup::chosen, this,
            [this](int value) { m_with.config.setEditorLocation(static_cast<EditorLocation>(value)); });
    section->addRow(m_editorLocation);
    return section;
}

SettingsSection *GeneralSettingsView::makeInAppEditor()
{
    auto *section = new SettingsSection(tr("In-app editor"));
    m_replaceCard = new ChoiceGroup(tr("When you export from the editor"),
                                    {{0, tr("Add a new card")}, {1, tr("Replace the original card")}});
    connect(m_replaceCard, &ChoiceGroup::chosen, this,
            [this](int value) { m_with.config.setReplaceCardOnEdit(value == 1); });
    section->addRow(m_replaceCard);
    return section;
}

SettingsSection *GeneralSettingsView::makeStartup()
{
    auto *section = new SettingsSection(tr("Startup"));
    m_startAtLogin = new QCheckBox(tr("Start LumenFold at login"));
    connect(m_startAtLogin, &QCheckBox::toggled, this, &GeneralSettingsView::setStartsAtLogin);
    section->addRow(m_startAtLogin);
    return section;
}

void GeneralSettingsView::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    if (!event->spontaneous()) {
        read();
    }
}

void GeneralSettingsView::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_startAtLogin != nullptr) {
        colorIndicators();
    }
}

void GeneralSettingsView::colorIndicators()
{
    // In the dark the toolkit's own style paints empty boxes as dark as the window.
    constexpr int emptyBoxLightness = 190;
    const bool isDark = palette().color(QPalette::Window).lightness() < palette().color(QPalette::Text).lightness();
    QPalette own;
    if (isDark) {
        own.setColor(QPalette::Base, palette().color(QPalette::Window).lighter(emptyBoxLightness));
    }
    for (QAbstractButton *button : widget()->findChildren<QAbstractButton *>()) {
        if (button->isCheckable()) {
            button->setPalette(own);
        }
    }
}

void GeneralSettingsView::read()
{
    m_saveLocation->read();
    showChecked(m_hideCard, m_with.config.hideCardOnCopyOrSave());
    m_editorLocation->setValue(static_cast<int>(m_with.config.editorLocation()));
    m_replaceCard->setValue(m_with.config.replaceCardOnEdit() ? 1 : 0);
    showChecked(m_startAtLogin, m_with.autostart.isEnabled());
}

void GeneralSettingsView::setStartsAtLogin(bool starts)
{
    if (const auto done = m_with.autostart.setEnabled(starts); !done) {
        qWarning().noquote().nospace() << "LumenFold autostart error: " << done.error().description;
        (void)m_with.recorder.alerts.runModal(
            {.messageText = starts ? tr("LumenFold could not be set to start at login")
                                   : tr("LumenFold could not be kept from starting at login"),
             .informativeText = done.error().description,
             .buttons = {tr("OK")}});
    }
    showChecked(m_startAtLogin, m_with.autostart.isEnabled());
}

} // namespace lumenfold
