#include "app/configuration/AppConfig.h"

#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QUrlQuery>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class AppConfigTest : public ::testing::Test {
protected:
    FakeUserDefaults m_defaults;
    FakeScreens m_screens;
    FakeFileManager m_files;
    AppConfig m_config{m_defaults, m_screens, m_files};
};

TEST_F(AppConfigTest, AnEmptyStoreReadsAsTheDefaults)
{
    EXPECT_FALSE(m_config.replaceCardOnEdit());
    EXPECT_FALSE(m_config.hideCardOnCopyOrSave());
    EXPECT_EQ(m_config.editorLocation(), EditorLocation::macApp);
    EXPECT_EQ(m_config.saveDirectory(), QStringLiteral("/home/someone/Pictures"));
    EXPECT_EQ(m_config.editorBaseURL(), m_config.webBaseURL());
    EXPECT_TRUE(m_config.apiBaseURL().isValid());
    EXPECT_TRUE(m_defaults.writes().isEmpty());
}

TEST_F(AppConfigTest, AFolderIsChosenAndForgotten)
{
    EXPECT_FALSE(m_config.hasChosenSaveDirectory());
    m_config.chooseSaveDirectory(QStringLiteral("/media/disk/Shots"));
    EXPECT_EQ(m_defaults.string(AppConfig::saveDirectoryKey), QStringLiteral("/media/disk/Shots"));
    EXPECT_TRUE(m_config.hasChosenSaveDirectory()) << "also while it is missing";
    EXPECT_EQ(m_config.saveDirectory(), m_config.defaultSaveDirectory());
    m_files.directories.insert(QStringLiteral("/media/disk/Shots"));
    EXPECT_EQ(m_config.saveDirectory(), QStringLiteral("/media/disk/Shots"));
    m_config.forgetSaveDirectory();
    EXPECT_FALSE(m_defaults.contains(AppConfig::saveDirectoryKey));
    EXPECT_FALSE(m_config.hasChosenSaveDirectory());
}

TEST_F(AppConfigTest, TheKeysInTheStoreAreThese)
{
    EXPECT_EQ(AppConfig::apiBaseOverrideKey, u"LumenFold.apiBaseURLOverride");
    EXPECT_EQ(AppConfig::editorBaseOverrideKey, u"LumenFold.editorBaseURLOverride");
    EXPECT_EQ(AppConfig::replaceCardOnEditKey, u"LumenFold.replaceCardOnEdit");
    EXPECT_EQ(AppConfig::editorLocationKey, u"LumenFold.editorLocation");
    EXPECT_EQ(AppConfig::hideCardOnCopyOrSaveKey, u"LumenFold.hideCardOnCopyOrSave");
    EXPECT_EQ(AppConfig::saveDirectoryKey, u"LumenFold.saveDirectory");
}

TEST_F(AppConfigTest, SettingsAreWrittenAtOnceAndReadAnew)
{
    m_config.setReplaceCardOnEdit(true);
    m_config.setHideCardOnCopyOrSave(true);
    m_config.setEditorLocation(EditorLocation::browser);
    EXPECT_TRUE(m_defaults.boolean(AppConfig::replaceCardOnEditKey));
    EXPECT_TRUE(m_defaults.boolean(AppConfig::hideCardOnCopyOrSaveKey));
    EXPECT_EQ(m_defaults.string(AppConfig::editorLocationKey), QStringLiteral("browser"));

    m_defaults.setRaw(AppConfig::replaceCardOnEditKey, false);
    m_defaults.setRaw(AppConfig::editorLocationKey, QStringLiteral("macApp"));
    EXPECT_FALSE(m_config.replaceCardOnEdit());
    EXPECT_TRUE(m_config.hideCardOnCopyOrSave());
    EXPECT_EQ(m_config.editorLocation(), EditorLocation::macApp);

    m_config.setEditorLocation(EditorLocation::macApp);
    EXPECT_EQ(m_defaults.string(AppConfig::editorLocationKey), QStringLiteral("macApp"));
}

TEST_F(AppConfigTest, OnlyTheExactWordMeansTheBrowser)
{
    for (const QString &text : {QStringLiteral("Browser"), QStringLiteral(" browser"), QString(),
                                QStringLiteral("something"), QStringLiteral("macApp")}) {
        m_defaults.setRaw(AppConfig::editorLocationKey, text);
        EXPECT_EQ(m_config.editorLocation(), EditorLocation::macApp) << qPrintable(text);
    }
    m_defaults.setRaw(AppConfig::editorLocationKey, QStringLiteral("browser"));
    EXPECT_EQ(m_config.editorLocation(), EditorLocation::browser);
}

TEST_F(AppConfigTest, ValuesOfAnotherTypeReadAsTheDefault)
{
    m_defaults.setRaw(AppConfig::replaceCardOnEditKey, QStringLiteral("yes"));
    m_defaults.setRaw(AppConfig::editorLocationKey, QByteArray("browser"));
    m_defaults.setRaw(AppConfig::saveDirectoryKey, qint64(1));
    m_defaults.setRaw(AppConfig::apiBaseOverrideKey, true);
    EXPECT_FALSE(m_config.replaceCardOnEdit());
    EXPECT_EQ(m_config.editorLocation(), EditorLocation::macApp);
    EXPECT_EQ(m_config.saveDirectory(), m_config.defaultSaveDirectory());
    EXPECT_TRUE(m_config.apiBaseURL().isValid());
}

TEST_F(AppConfigTest, OverridesReplaceTheBaseAddressesUnlessTheyAreEmptyOrInvalid)
{
    const QUrl builtIn = m_config.apiBaseURL();
    for (const QString &unusable : {QString(), QStringLiteral("not an address")}) {
        m_defaults.setRaw(AppConfig::apiBaseOverrideKey, unusable);
        m_defaults.setRaw(AppConfig::editorBaseOverrideKey, unusable);
        EXPECT_EQ(m_config.apiBaseURL(), builtIn);
        EXPECT_EQ(m_config.editorBaseURL(), m_config.webBaseURL());
    }
    m_defaults.setRaw(AppConfig::apiBaseOverrideKey, QStringLiteral("http://localhost:9/"));
    m_defaults.setRaw(AppConfig::editorBaseOverrideKey, QStringLiteral("http://localhost:8"));
    EXPECT_EQ(m_config.userEndpoint(), QUrl(QStringLiteral("http://localhost:9/v1/user")));
    EXPECT_EQ(m_config.templatesEndpoint(), QUrl(QStringLiteral("http://localhost:9/v1/templates")));
    EXPECT_EQ(m_config.signedUrlEndpoint(), QUrl(QStringLiteral("http://localhost:9/v1/user/upload/signed-url")));
    EXPECT_EQ(m_config.embeddedEditorURL(std::nullopt),
              QUrl(QStringLiteral("http://localhost:8/integration/electron")));
}

TEST_F(AppConfigTest, TheSiteIsNeverOverridden)
{
    const QUrl site = m_config.webBaseURL();
    m_defaults.setRaw(AppConfig::editorBaseOverrideKey, QStringLiteral("http://localhost:8"));
    m_defaults.setRaw(AppConfig::apiBaseOverrideKey, QStringLiteral("http://localhost:9"));
    EXPECT_EQ(m_config.webBaseURL(), site);
    EXPECT_EQ(m_config.apiKeyURL().host(), site.host());
    EXPECT_EQ(m_config.studioImportURL(QStringLiteral("x"), std::nullopt).host(), site.host());
}

TEST_F(AppConfigTest, TheApiKeyPageHasAFragment)
{
    const QUrl url = m_config.apiKeyURL();
    EXPECT_EQ(url.path(), u"/dashboard/account");
    EXPECT_EQ(url.fragment(), u"api-key");
    EXPECT_FALSE(url.hasQuery());
}

TEST_F(AppConfigTest, TheStudioGetsTheImageAndMaybeATemplate)
{
    const QString image = QStringLiteral("https://cdn.example/a.png?sig=a+b&c=d");
    const QUrlQuery plain(m_config.studioImportURL(image, std::nullopt));
    ASSERT_EQ(plain.queryItems().size(), 1);
    EXPECT_EQ(plain.queryItemValue(QStringLiteral("src"), QUrl::FullyDecoded), image);

    const QUrl url = m_config.studioImportURL(image, QStringLiteral("t 1"));
    EXPECT_EQ(url.path(), u"/studio");
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items.at(0), qMakePair(QStringLiteral("src"), image));
    EXPECT_EQ(items.at(1), qMakePair(QStringLiteral("id"), QStringLiteral("t 1")));

    EXPECT_EQ(QUrlQuery(m_config.studioImportURL(image, QString())).queryItems().size(), 2);
}

TEST_F(AppConfigTest, TheEditorGetsTheKeyWhenThereIsOne)
{
    EXPECT_FALSE(m_config.embeddedEditorURL(std::nullopt).hasQuery());
    EXPECT_FALSE(m_config.embeddedEditorURL(QString()).hasQuery());
    const QUrl url = m_config.embeddedEditorURL(QStringLiteral("k&y=+%"));
    EXPECT_EQ(url.path(), u"/integration/electron");
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items.at(0), qMakePair(QStringLiteral("apiKey"), QStringLiteral("k&y=+%")));
}

TEST_F(AppConfigTest, WithoutAPicturesFolderImagesGoToTheHomeFolder)
{
    m_files.pictures = std::nullopt;
    EXPECT_EQ(m_config.defaultSaveDirectory(), QStringLiteral("/home/someone"));
    EXPECT_EQ(m_config.saveDirectory(), QStringLiteral("/home/someone"));
}

TEST_F(AppConfigTest, AChosenFolderThatIsMissingIsIgnoredUntilItIsThereAgain)
{
    const QString chosen = QStringLiteral("/media/stick");
    m_defaults.setRaw(AppConfig::saveDirectoryKey, chosen);
    EXPECT_EQ(m_config.saveDirectory(), m_config.defaultSaveDirectory());
    m_files.directories.insert(chosen);
    EXPECT_EQ(m_config.saveDirectory(), chosen);
    m_files.directories.clear();
    EXPECT_EQ(m_config.saveDirectory(), m_config.defaultSaveDirectory());
    EXPECT_EQ(m_defaults.string(AppConfig::saveDirectoryKey), chosen);
    EXPECT_TRUE(m_defaults.writes().isEmpty());
}

TEST_F(AppConfigTest, AFolderThatDependsOnWhereTheProgramWasStartedIsNoFolder)
{
    m_defaults.setRaw(AppConfig::saveDirectoryKey, QStringLiteral("Pictures"));
    m_files.directories.insert(QStringLiteral("Pictures"));
    EXPECT_EQ(m_config.saveDirectory(), m_config.defaultSaveDirectory());
}

TEST_F(AppConfigTest, TheStackIsMeasuredOnTheMainScreenAsItIsNow)
{
    EXPECT_EQ(m_config.previewStackCapacity(), 6);
    EXPECT_NEAR(m_config.previewCardDefaultSize().height, 127.83, 0.005);

    m_screens.setScreens(
        {FakeScreens::plainScreen(7, {0, 0, 1600, 1000}), FakeScreens::plainScreen(8, {1600, 0, 400, 300})});
    EXPECT_EQ(m_config.previewStackCapacity(), 7);

    m_screens.setScreens({});
    EXPECT_EQ(m_config.previewStackCapacity(), 6);
    EXPECT_EQ(m_config.previewCardDefaultSize(), (Size{220, 165}));
}

} // namespace
} // namespace lumenfold::test
