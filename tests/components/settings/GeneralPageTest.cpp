#include "tests/components/settings/SettingsWindowFixture.h"

#include "app/actions/ActionHandler.h"
#include "cards/PreviewModel.h"
#include "cards/face/CardActions.h"
#include "settings/PathLabel.h"
#include "settings/SettingsSection.h"
#include "shortcuts/recorder/ShortcutRecorderButton.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/unit/LogWatch.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using GeneralPageTest = SettingsWindowTest;

const QString pictures = QStringLiteral("/home/someone/Pictures");
const QString chosen = QStringLiteral("/home/someone/Screenshots");

/// The words of everything of a kind, in its order.
template <typename Widget>
QStringList texts(const QWidget *in)
{
    QStringList all;
    for (const Widget *each : in->findChildren<Widget *>()) {
        all.append(each->text());
    }
    return all;
}

QPushButton *useDefault()
{
    return SettingsDesk::part<QPushButton>(QStringLiteral("Use Default"));
}

QString shownPath()
{
    return SettingsDesk::parts<PathLabel>().constFirst()->text();
}

QRadioButton *radio(const char *text)
{
    return SettingsDesk::part<QRadioButton>(QString::fromUtf8(text));
}

TEST_F(GeneralPageTest, ItsSectionsAndTheirWordsStandInTheirOrder)
{
    present();
    QList<QStringList> sections;
    for (const SettingsSection *section : SettingsDesk::parts<SettingsSection>()) {
        sections.append(texts<QLabel>(section) + texts<QAbstractButton>(section));
    }
    // The tools for "Reset to default" have no words.
    EXPECT_THAT(
        sections,
        ::testing::ElementsAre(
            QStringList(
                {QStringLiteral("Shortcuts"),
                 QStringLiteral("Click a shortcut, then press a new key combination (must include ⌘, ⌥, ⌃, or ⇧)."),
                 QStringLiteral("Capture full screen"), QStringLiteral("Capture area"),
                 QStringLiteral("Capture last area"), QStringLiteral("Undo dismissed cards"), QStringLiteral("⌥⌘1"),
                 QString(), QStringLiteral("⌥⌘2"), QString(), QStringLiteral("⌥⌘3"), QString(), QStringLiteral("⌘Z"),
                 QString()}),
            QStringList(
                {QStringLiteral("Save location"), pictures, QStringLiteral("Choose"), QStringLiteral("Use Default")}),
            QStringList({QStringLiteral("Cards"), QStringLiteral("Hide the card after Copy or Save")}),
            QStringList({QStringLiteral("Edit screenshot"), QStringLiteral("Open the editor in"),
                         QStringLiteral("LumenFold Mac app"), QStringLiteral("Browser")}),
            QStringList({QStringLiteral("In-app editor"), QStringLiteral("When you export from the editor"),
                         QStringLiteral("Add a new card"), QStringLiteral("Replace the original card")}),
            QStringList({QStringLiteral("Startup"), QStringLiteral("Start LumenFold at login")})));
    for (const ShortcutRecorderButton *recorder : SettingsDesk::parts<ShortcutRecorderButton>()) {
        EXPECT_EQ(recorder->size(), QSize(130, 24)) << qPrintable(recorder->text());
    }
    const QList<QToolButton *> resets = SettingsDesk::parts<QToolButton>();
    EXPECT_EQ(resets.size(), 4);
    for (const QToolButton *reset : resets) {
        EXPECT_EQ(reset->toolTip(), u"Reset to default");
    }
}

TEST_F(GeneralPageTest, AFolderIsChosen)
{
    present();
    EXPECT_FALSE(useDefault()->isEnabled());
    click(SettingsDesk::part<QPushButton>(QStringLiteral("Choose")));
    ASSERT_TRUE(waitFor([this] { return desk->openPanel.upCount() == 1; }));
    const OpenPanel::Request &request = desk->openPanel.shown.constFirst();
    EXPECT_EQ(request.prompt, u"Choose");
    EXPECT_EQ(request.directory, pictures);
    EXPECT_EQ(request.window, SettingsDesk::window());

    SettingsDesk::part<QPushButton>(QStringLiteral("Choose"))->click();
    EXPECT_EQ(desk->openPanel.upCount(), 1) << "one panel at a time";

    desk->files.directories.insert(chosen);
    desk->openPanel.answer(chosen);
    EXPECT_EQ(desk->defaults.string(AppConfig::saveDirectoryKey), chosen);
    EXPECT_EQ(desk->config.saveDirectory(), chosen);
    EXPECT_EQ(shownPath(), chosen);
    EXPECT_TRUE(useDefault()->isEnabled());
}

TEST_F(GeneralPageTest, APanelWithoutAnAnswerChangesNothing)
{
    present();
    for (int time = 0; time < 2; ++time) {
        SettingsDesk::part<QPushButton>(QStringLiteral("Choose"))->click();
        desk->openPanel.answer(std::nullopt);
        EXPECT_EQ(shownPath(), pictures);
        EXPECT_TRUE(desk->defaults.writes().isEmpty());
    }
    EXPECT_EQ(desk->openPanel.shown.size(), 2);
}

TEST_F(GeneralPageTest, AnAnswerAfterTheWindowHasGoneIsNotForIt)
{
    present();
    SettingsDesk::part<QPushButton>(QStringLiteral("Choose"))->click();
    desk->controller.reset();
    desk->openPanel.answer(chosen);
    EXPECT_TRUE(desk->defaults.writes().isEmpty());
}

TEST_F(GeneralPageTest, UseDefaultShowsThePicturesFolderAndForgetsTheOther)
{
    desk->files.directories.insert(chosen);
    desk->config.chooseSaveDirectory(chosen);
    present();
    EXPECT_EQ(shownPath(), chosen);
    click(useDefault());
    ASSERT_TRUE(waitFor([] { return shownPath() == pictures; }));
    EXPECT_FALSE(desk->defaults.contains(AppConfig::saveDirectoryKey));
    EXPECT_FALSE(useDefault()->isEnabled());
}

TEST_F(GeneralPageTest, AChosenFolderThatIsMissingCanBeForgotten)
{
    desk->config.chooseSaveDirectory(QStringLiteral("/media/unplugged"));
    present();
    EXPECT_EQ(shownPath(), pictures);
    EXPECT_TRUE(useDefault()->isEnabled());
    useDefault()->click();
    EXPECT_FALSE(desk->defaults.contains(AppConfig::saveDirectoryKey));
}

TEST_F(GeneralPageTest, ALongPathIsCutInItsMiddleAndReadInFull)
{
    const QString longPath = QStringLiteral("/home/someone/") + QStringLiteral("a folder/").repeated(30);
    desk->files.directories.insert(longPath);
    desk->config.chooseSaveDirectory(longPath);
    present();
    const PathLabel *label = SettingsDesk::parts<PathLabel>().constFirst();
    EXPECT_EQ(label->toolTip(), longPath);
    EXPECT_EQ(label->accessibleName(), QString()) << "assistive technologies read the text itself";
    EXPECT_LT(label->mapTo(SettingsDesk::window(), label->rect().topRight()).x(),
              useDefault()->mapTo(SettingsDesk::window(), QPoint(0, 0)).x());
    EXPECT_EQ(SettingsDesk::window()->size(), QSize(520, 460));
}

TEST_F(GeneralPageTest, SwitchesAreStoredAtOnce)
{
    present();
    auto *hide = SettingsDesk::part<QCheckBox>(QStringLiteral("Hide the card after Copy or Save"));
    click(hide);
    EXPECT_TRUE(waitFor([this] { return desk->config.hideCardOnCopyOrSave(); }));
    click(hide);
    EXPECT_TRUE(waitFor([this] { return !desk->config.hideCardOnCopyOrSave(); }));

    // As assistive technologies do it.
    hide->toggle();
    EXPECT_TRUE(desk->config.hideCardOnCopyOrSave());

    EXPECT_TRUE(radio("Add a new card")->isChecked());
    click(radio("Replace the original card"));
    EXPECT_TRUE(waitFor([this] { return desk->config.replaceCardOnEdit(); }));
    click(radio("Add a new card"));
    EXPECT_TRUE(waitFor([this] { return !desk->config.replaceCardOnEdit(); }));
}

TEST_F(GeneralPageTest, WhereTheEditorOpensIsWhereEditGoes)
{
    FakePasteboard pasteboard;
    const ActionHandler actions(pasteboard, desk->config);
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    const PreviewModel::Options options{.image = Image::fromPixels(picture)};
    const auto model = std::make_shared<PreviewModel>(desk->config, options);
    int edits = 0;
    model->onEditRequested = [&edits] { ++edits; };
    const CardActions card(model, {.actions = actions,
                                   .config = desk->config,
                                   .queue = desk->queue,
                                   .workspace = desk->workspace,
                                   .service = &desk->service});
    present();
    EXPECT_TRUE(radio("LumenFold Mac app")->isChecked());
    click(radio("Browser"));
    ASSERT_TRUE(waitFor([this] { return desk->defaults.contains(AppConfig::editorLocationKey); }));
    EXPECT_EQ(desk->defaults.string(AppConfig::editorLocationKey), QStringLiteral("browser"));
    card.edit();
    EXPECT_EQ(desk->service.opened.size(), 1U);
    EXPECT_EQ(edits, 0);
    desk->service.succeed();

    click(radio("LumenFold Mac app"));
    ASSERT_TRUE(waitFor([this] { return desk->config.editorLocation() == EditorLocation::macApp; }));
    card.edit();
    EXPECT_EQ(desk->service.opened.size(), 1U);
    EXPECT_EQ(edits, 1);
}

TEST_F(GeneralPageTest, AnUnknownEditorShowsAsTheProgramsOwnAndStays)
{
    desk->defaults.setRaw(AppConfig::editorLocationKey, QStringLiteral("Browser"));
    present();
    EXPECT_TRUE(radio("LumenFold Mac app")->isChecked());
    EXPECT_EQ(desk->defaults.string(AppConfig::editorLocationKey), QStringLiteral("Browser"));
}

TEST_F(GeneralPageTest, TheDesktopStartsTheProgramAtLoginIfTheUserWantsIt)
{
    present();
    auto *login = SettingsDesk::part<QCheckBox>(QStringLiteral("Start LumenFold at login"));
    EXPECT_FALSE(login->isChecked());
    click(login);
    EXPECT_TRUE(waitFor([this] { return desk->autostart.enabled; }));
    click(login);
    EXPECT_TRUE(waitFor([this] { return !desk->autostart.enabled; }));
}

TEST_F(GeneralPageTest, ALoginThatCannotBeChangedShowsAsItIs)
{
    desk->autostart.failure = PlatformError{.description = QStringLiteral("no room")};
    present();
    auto *login = SettingsDesk::part<QCheckBox>(QStringLiteral("Start LumenFold at login"));
    expectLogLine(QStringLiteral("LumenFold autostart error: no room"));
    desk->alerts.answerNextWith(alertFirstButtonReturn);
    login->click();
    EXPECT_EQ(desk->autostart.changes, 1);
    EXPECT_FALSE(login->isChecked());
    ASSERT_EQ(desk->alerts.shown.size(), 1);
    EXPECT_EQ(desk->alerts.shown.first().messageText, QStringLiteral("LumenFold could not be set to start at login"));
    EXPECT_EQ(desk->alerts.shown.first().informativeText, QStringLiteral("no room"));
}

} // namespace
} // namespace lumenfold::test
