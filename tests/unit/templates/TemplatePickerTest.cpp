#include "service/templates/TemplatePicker.h"

#include "service/AuthService.h"
#include "service/ServiceError.h"
#include "service/templates/TemplateStore.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace lumenfold::test {
namespace {

using Content = TemplatePicker::Content;

const LumenfoldTemplate newest{
    .id = QStringLiteral("1"), .name = QStringLiteral("Banner"), .editedAt = QStringLiteral("2024-06")};
const LumenfoldTemplate middle{
    .id = QStringLiteral("2"), .name = QStringLiteral("Team logo"), .editedAt = QStringLiteral("2024-05")};
const LumenfoldTemplate oldest{.id = QStringLiteral("3"), .name = QStringLiteral("Poster")};

class TemplatePickerTest : public ::testing::Test {
protected:
    ~TemplatePickerTest() override
    {
        while (service.running() > 0) {
            service.succeed();
        }
    }

    [[nodiscard]] TemplatePicker::Collaborators collaborators()
    {
        return {.service = service,
                .isSignedIn = [this] { return isSignedIn; },
                .store = store,
                .notifications = notifications,
                .apiKeySetup = apiKeySetup};
    }
    void make() { picker = std::make_unique<TemplatePicker>(collaborators()); }
    /// With the three templates.
    void makeLoaded()
    {
        make();
        service.templates = {middle, oldest, newest};
        picker->setShown(true);
        service.succeed();
    }
    void setSignedIn(bool signedIn)
    {
        isSignedIn = signedIn;
        notifications.post(AuthService::authStateChangedNotification);
    }
    [[nodiscard]] static QStringList namesIn(const TemplatePicker &picker)
    {
        QStringList names;
        for (std::size_t row = 0; row < picker.displayedCount(); ++row) {
            names.append(picker.displayedAt(row).name);
        }
        return names;
    }

    FakeLumenfoldService service;
    FakeApiKeySetupWindow apiKeySetup;
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    TemplateStore store{defaults, notifications};
    bool isSignedIn = true;
    std::unique_ptr<TemplatePicker> picker;
};

TEST_F(TemplatePickerTest, WithoutAKeyNothingIsFetched)
{
    isSignedIn = false;
    make();
    picker->setShown(true);
    picker->load();
    EXPECT_EQ(service.fetches, 0);
    EXPECT_FALSE(picker->isLoading());
    EXPECT_EQ(picker->content(), Content::notConnected);
    EXPECT_EQ(picker->message(), u"Connect with your API key to load templates.");
    picker->connectAccount();
    EXPECT_EQ(apiKeySetup.presentations, 1);
}

TEST_F(TemplatePickerTest, EachShowingFetchesOnce)
{
    make();
    EXPECT_EQ(service.fetches, 0);
    picker->setShown(true);
    EXPECT_EQ(service.fetches, 1);
    EXPECT_EQ(picker->content(), Content::loading);
    EXPECT_EQ(picker->message(), u"Loading templates…");
    picker->setShown(true);
    EXPECT_EQ(service.fetches, 1);
    service.succeed();
    picker->setShown(false);
    EXPECT_EQ(service.fetches, 1);
    picker->setShown(true);
    EXPECT_EQ(service.fetches, 2);
}

TEST_F(TemplatePickerTest, AnEmptyListIsSaidToBeOne)
{
    make();
    picker->setShown(true);
    service.succeed();
    EXPECT_EQ(picker->content(), Content::noTemplates);
    EXPECT_EQ(picker->message(), u"No templates yet. Create one in the LumenFold editor.");
    picker->setSearchText(QStringLiteral("logo"));
    EXPECT_EQ(picker->content(), Content::noTemplates);
}

TEST_F(TemplatePickerTest, TheGridShowsTheNewestFirst)
{
    makeLoaded();
    EXPECT_EQ(picker->content(), Content::grid);
    EXPECT_EQ(picker->message(), u"");
    EXPECT_EQ(namesIn(*picker), QStringList({newest.name, middle.name, oldest.name}));
}

TEST_F(TemplatePickerTest, ASearchWithoutHitSaysForWhat)
{
    makeLoaded();
    picker->setSearchText(QStringLiteral("  LOGO "));
    EXPECT_EQ(namesIn(*picker), QStringList({middle.name}));
    picker->setSearchText(QStringLiteral("  Brochure %1 "));
    EXPECT_EQ(picker->content(), Content::noMatch);
    EXPECT_EQ(picker->message(), u"No templates match “Brochure %1”");
    picker->setSearchText({});
    EXPECT_EQ(picker->content(), Content::grid);
}

TEST_F(TemplatePickerTest, AFailureShowsItsTextAndKeepsTheTemplates)
{
    makeLoaded();
    picker->load();
    EXPECT_EQ(picker->content(), Content::loading);
    EXPECT_EQ(picker->displayedCount(), 3u);
    service.fail(ServiceError::server(500, QStringLiteral("oops")));
    EXPECT_EQ(picker->content(), Content::error);
    EXPECT_EQ(picker->message(), u"Server returned 500: oops");
    EXPECT_EQ(picker->displayedCount(), 3u);

    picker->load();
    EXPECT_EQ(picker->content(), Content::loading);
    EXPECT_EQ(picker->errorMessage(), std::nullopt);
    service.succeed();
    EXPECT_EQ(picker->content(), Content::grid);
}

TEST_F(TemplatePickerTest, AFailureWithoutTextForTheUserHasOne)
{
    make();
    picker->setShown(true);
    service.fail(std::runtime_error("transport: 0x17"));
    EXPECT_EQ(picker->message(), u"Couldn't load templates.");
    EXPECT_FALSE(picker->isLoading());
}

TEST_F(TemplatePickerTest, AFailureIsNotTriedAgainByItself)
{
    make();
    picker->setShown(true);
    service.fail(ServiceError::decoding());
    picker->setSearchText(QStringLiteral("x"));
    store.clear();
    EXPECT_EQ(service.fetches, 1);
}

TEST_F(TemplatePickerTest, BeingSignedOutGoesBeforeEverythingElse)
{
    makeLoaded();
    picker->load();
    setSignedIn(false);
    EXPECT_EQ(picker->content(), Content::notConnected);
    service.fail(ServiceError::notAuthenticated());
    EXPECT_EQ(picker->content(), Content::notConnected);
}

TEST_F(TemplatePickerTest, SigningInWhileItIsSeenFetches)
{
    isSignedIn = false;
    make();
    picker->setShown(true);
    setSignedIn(true);
    EXPECT_EQ(service.fetches, 1);
    setSignedIn(true);
    EXPECT_EQ(service.fetches, 1) << "another address or tier of the same account";
    setSignedIn(false);
    picker->setShown(false);
    setSignedIn(true);
    EXPECT_EQ(service.fetches, 1) << "nobody sees it";
}

TEST_F(TemplatePickerTest, OnlyWhatTheLatestFetchBringsIsShown)
{
    make();
    picker->setShown(true);
    picker->load();
    service.templates = {oldest};
    service.succeed();
    EXPECT_TRUE(picker->isLoading());
    EXPECT_EQ(picker->displayedCount(), 0u);
    service.templates = {newest, middle};
    service.succeed();
    EXPECT_FALSE(picker->isLoading());
    EXPECT_EQ(picker->displayedCount(), 2u);
}

TEST_F(TemplatePickerTest, AClickSelectsAndAnotherClears)
{
    makeLoaded();
    EXPECT_EQ(picker->subtitle(), u"Screenshots open in the editor with no template.");
    picker->toggle(middle.id);
    EXPECT_EQ(defaults.string(TemplateStore::nameKey), middle.name);
    EXPECT_EQ(picker->selectedId(), middle.id);
    EXPECT_EQ(namesIn(*picker), QStringList({middle.name, newest.name, oldest.name}));
    EXPECT_EQ(picker->subtitle(), u"Applied to every screenshot you open in LumenFold.");
    picker->toggle(oldest.id);
    EXPECT_EQ(namesIn(*picker), QStringList({oldest.name, newest.name, middle.name}));
    picker->toggle(oldest.id);
    EXPECT_FALSE(store.hasSelection());
    EXPECT_EQ(namesIn(*picker), QStringList({newest.name, middle.name, oldest.name}));
}

TEST_F(TemplatePickerTest, ClearBringsTheSelectedOneBackToItsPlace)
{
    store.select(middle);
    makeLoaded();
    EXPECT_EQ(picker->selectedId(), middle.id);
    EXPECT_EQ(namesIn(*picker).constFirst(), middle.name);
    picker->clear();
    EXPECT_EQ(namesIn(*picker), QStringList({newest.name, middle.name, oldest.name}));
    EXPECT_EQ(picker->subtitle(), u"Screenshots open in the editor with no template.");
}

TEST_F(TemplatePickerTest, TwoPickersStayInStep)
{
    makeLoaded();
    TemplatePicker other(collaborators());
    other.setShown(true);
    service.succeed();
    picker->toggle(oldest.id);
    EXPECT_EQ(other.selectedId(), oldest.id);
    EXPECT_EQ(namesIn(other), namesIn(*picker));
    other.clear();
    EXPECT_EQ(picker->selectedId(), std::nullopt);
}

TEST_F(TemplatePickerTest, ASelectedTemplateThatIsGoneIsStillSelected)
{
    store.select({.id = QStringLiteral("gone"), .name = QStringLiteral("Old")});
    makeLoaded();
    EXPECT_EQ(namesIn(*picker), QStringList({newest.name, middle.name, oldest.name}));
    EXPECT_EQ(picker->subtitle(), u"Applied to every screenshot you open in LumenFold.");
    EXPECT_EQ(store.selectedId(), QStringLiteral("gone"));
}

TEST_F(TemplatePickerTest, SigningOutKeepsTheSelection)
{
    store.select(middle);
    makeLoaded();
    setSignedIn(false);
    EXPECT_EQ(store.selectedId(), middle.id);
}

TEST_F(TemplatePickerTest, APickerThatGoesWhileAFetchIsUnderWayIsNotToldOfIt)
{
    make();
    picker->setShown(true);
    picker.reset();
    service.fail(ServiceError::decoding());
    EXPECT_EQ(service.running(), 0u);
}

} // namespace
} // namespace lumenfold::test
