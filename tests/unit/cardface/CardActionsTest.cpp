#include "cards/face/CardActions.h"
#include "service/ServiceError.h"
#include "service/http/TransportError.h"
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/cardface/CardFaceFixture.h"

#include <QDir>
#include <QTemporaryDir>

#include <stdexcept>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using Status = PreviewModel::Status;

class CardActionsTest : public CardFaceTest {
protected:
    CardActionsTest()
    {
        makeCard();
        cardActions = std::make_unique<CardActions>(model, actionCollaborators());
        defaults.setString(AppConfig::saveDirectoryKey, folder.path());
        files.directories.insert(folder.path());
    }

    [[nodiscard]] const Status &status() const { return model->status(); }
    [[nodiscard]] qsizetype savedFiles() const { return QDir(folder.path()).entryList(QDir::Files).size(); }
    void editInBrowser()
    {
        config.setEditorLocation(EditorLocation::browser);
        cardActions->edit();
    }

    QTemporaryDir folder;
    std::unique_ptr<CardActions> cardActions;
};

TEST_F(CardActionsTest, editingInTheProgramIsReported)
{
    cardActions->edit();

    EXPECT_EQ(reported, QStringList({QStringLiteral("edit")}));
    EXPECT_EQ(status(), Status(PreviewModel::Idle{}));
    EXPECT_TRUE(service.opened.empty());
}

TEST_F(CardActionsTest, editingInTheBrowserUploadsTheCardsImage)
{
    editInBrowser();
    EXPECT_EQ(status(), Status(PreviewModel::Uploading{}));
    EXPECT_EQ(service.opened, std::vector{model->image()});
    EXPECT_TRUE(reported.isEmpty());

    service.succeed();
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
    queue.advance(1h);
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
}

TEST_F(CardActionsTest, anUploadToSaveEndsLikeAnyOther)
{
    cardActions->upload(UploadKind::save);
    EXPECT_EQ(service.saved, std::vector{model->image()});
    EXPECT_TRUE(service.opened.empty());

    service.succeed();
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
}

TEST_F(CardActionsTest, aMissingKeyIsAskedFor)
{
    editInBrowser();
    service.fail(ServiceError::notAuthenticated());

    EXPECT_EQ(status(), Status(PreviewModel::Failed{QStringLiteral("API key required")}));
    EXPECT_EQ(apiKeySetup.presentations, 1);
}

TEST_F(CardActionsTest, aFailedUploadStaysOnTheCardAndInTheLog)
{
    editInBrowser();
    expectLogLine(QStringLiteral("LumenFold upload error: Server returned 500: oops"));
    service.fail(ServiceError::server(500, QStringLiteral("oops")));

    EXPECT_EQ(status(), Status(PreviewModel::Failed{QStringLiteral("Upload failed")}));
    EXPECT_EQ(apiKeySetup.presentations, 0);
    queue.advance(24h);
    EXPECT_EQ(status(), Status(PreviewModel::Failed{QStringLiteral("Upload failed")}));
}

TEST_F(CardActionsTest, anErrorOfTheTransportIsAFailureToo)
{
    editInBrowser();
    expectLogLine(QStringLiteral("LumenFold upload error: no route to host"));
    service.fail(std::runtime_error("no route to host"));

    EXPECT_EQ(status(), Status(PreviewModel::Failed{QStringLiteral("Upload failed")}));
}

TEST_F(CardActionsTest, anUploadThatWasCalledOffIsNoFailure)
{
    editInBrowser();
    service.fail(TransportError(TransportError::Kind::cancelled));

    EXPECT_EQ(status(), Status(PreviewModel::Idle{}));
    EXPECT_EQ(apiKeySetup.presentations, 0);
}

TEST_F(CardActionsTest, withoutAServiceAnUploadFails)
{
    config.setEditorLocation(EditorLocation::browser);
    CardActions::Collaborators with = actionCollaborators();
    with.service = nullptr;
    expectLogLine(QStringLiteral("LumenFold upload error: there is no service to upload to"));
    CardActions(model, with).edit();

    EXPECT_EQ(status(), Status(PreviewModel::Failed{QStringLiteral("Upload failed")}));
}

TEST_F(CardActionsTest, anUploadMayEndAfterItsCardIsGone)
{
    editInBrowser();
    cardActions.reset();
    view.reset();
    model.reset();
    service.fail(ServiceError::notAuthenticated());

    EXPECT_EQ(apiKeySetup.presentations, 1);
}

TEST_F(CardActionsTest, aSavedCardSaysSoForAMoment)
{
    cardActions->save();
    EXPECT_EQ(savedFiles(), 1);
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));

    queue.advance(1399ms);
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
    queue.advance(1ms);
    EXPECT_EQ(status(), Status(PreviewModel::Idle{}));
}

TEST_F(CardActionsTest, aCardThatCouldNotBeSavedSaysTheSame)
{
    model =
        std::make_shared<PreviewModel>(config, PreviewModel::Options{.image = Image::withoutRepresentation({40, 30})});
    CardActions(model, actionCollaborators()).save();

    EXPECT_EQ(savedFiles(), 0);
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
}

TEST_F(CardActionsTest, theFirstOfTwoSavesEndsTheSecondOnesMomentToo)
{
    cardActions->save();
    queue.advance(1s);
    cardActions->save();
    queue.advance(400ms);
    EXPECT_EQ(status(), Status(PreviewModel::Idle{}));
}

TEST_F(CardActionsTest, aStatusThatCameMeanwhileStays)
{
    for (const Status &next :
         {Status(PreviewModel::Failed{QStringLiteral("Upload failed")}), Status(PreviewModel::Uploading{})}) {
        cardActions->copy();
        model->setStatus(next);
        queue.advance(2s);
        EXPECT_EQ(status(), next);
    }
}

TEST_F(CardActionsTest, copyingTakesTheCardsImageAndNotTheEditors)
{
    ASSERT_NE(model->image(), model->editorSourceImage());
    cardActions->copy();

    EXPECT_EQ(pasteboard.images, std::vector{model->image()});
    EXPECT_EQ(status(), Status(PreviewModel::Uploaded{}));
}

TEST_F(CardActionsTest, aCardThatIsToHideGoesAwayInsteadOfSayingThatItIsDone)
{
    config.setHideCardOnCopyOrSave(true);
    cardActions->save();
    cardActions->copy();

    EXPECT_EQ(reported, QStringList({QStringLiteral("dismiss"), QStringLiteral("dismiss")}));
    EXPECT_EQ(savedFiles(), 1);
    EXPECT_EQ(pasteboard.images.size(), 1U);
    EXPECT_EQ(status(), Status(PreviewModel::Idle{}));
    EXPECT_EQ(queue.pendingCount(), 0U);
}

TEST_F(CardActionsTest, anUploadedPictureOpensInTheEditorWithTheChosenTemplate)
{
    const QUrl uploaded(QStringLiteral("https://files.example/a%20b.png"));
    cardActions->open(uploaded);
    EXPECT_EQ(workspace.openedAddresses.last(),
              config.studioImportURL(QStringLiteral("https://files.example/a%20b.png"), std::nullopt));

    templates.selected = QStringLiteral("template-7");
    cardActions->open(uploaded);
    EXPECT_EQ(workspace.openedAddresses.last(),
              config.studioImportURL(QStringLiteral("https://files.example/a%20b.png"), QStringLiteral("template-7")));
}

TEST(ServiceErrorTest, saysWhatTheUserReads)
{
    EXPECT_EQ(ServiceError::server(500, QStringLiteral("oops")).description(),
              QStringLiteral("Server returned 500: oops"));
    EXPECT_EQ(ServiceError::server(-1, std::nullopt).description(), QStringLiteral("Server returned -1: "));
    EXPECT_EQ(ServiceError::notAuthenticated().description(), QStringLiteral("No API key set."));
    EXPECT_EQ(ServiceError::encodingFailed().description(), QStringLiteral("Could not encode the screenshot."));
    EXPECT_EQ(ServiceError::decoding().description(), QStringLiteral("Could not parse the server response."));
}

} // namespace
} // namespace lumenfold::test
