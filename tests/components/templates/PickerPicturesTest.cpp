#include "tests/components/templates/PickerWindow.h"

#include "service/templates/TemplateCell.h"
#include "tests/support/desktop/Wait.h"

#include <QDir>
#include <QScrollBar>

namespace lumenfold::test {
namespace {

class PickerPicturesTest : public PickerWindowTest {
protected:
    /// Of the templates with these numbers.
    [[nodiscard]] QImage pictureOf(int number) const
    {
        const auto key = previewKey(service.templates.at(static_cast<std::size_t>(number - 1)));
        return previews().picture(*key);
    }
    [[nodiscard]] bool hasPicture(int number) const
    {
        return waitFor([&] { return !pictureOf(number).isNull(); });
    }
};

TEST_F(PickerPicturesTest, OnlyWhatIsInSightIsDownloadedAndWithoutTheKey)
{
    setTemplates(500);
    openLoaded();
    ASSERT_TRUE(hasPicture(1));
    ASSERT_TRUE(waitFor([this] { return previews().loads() == 0; }));
    const auto requests = server.requests(Endpoint::preview);
    EXPECT_GE(requests.size(), 6);
    EXPECT_LE(requests.size(), 20);
    for (const ReceivedRequest &request : requests) {
        EXPECT_EQ(request.header("Authorization"), std::nullopt);
        EXPECT_EQ(request.header("Cookie"), std::nullopt);
    }
    EXPECT_EQ(pictureOf(500), QImage());
    grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->maximum());
    EXPECT_TRUE(hasPicture(500));
    EXPECT_EQ(pictureOf(250), QImage());
}

TEST_F(PickerPicturesTest, PicturesAreScaledOnceForThePixelsOfTheCell)
{
    // 4:3, as wide as the box is not.
    openLoaded();
    ASSERT_TRUE(hasPicture(1));
    const int width = grid().columns().width;
    const QSize box = TemplateCell::pictureBox(QRect(0, 0, width, width)).size() * window->devicePixelRatio();
    const QSize picture(320, 240);
    EXPECT_EQ(pictureOf(1).size(), picture.boundedTo(picture.scaled(box, Qt::KeepAspectRatio)));
}

TEST_F(PickerPicturesTest, APictureIsSeenWhereItsCellIs)
{
    server.behave(Endpoint::preview, {.reply = ServiceReply{.status = 404}});
    openLoaded();
    ASSERT_TRUE(waitFor([this] { return !server.requests(Endpoint::preview).isEmpty() && previews().loads() == 0; }));
    const QPoint place =
        grid().viewport()->mapTo(window.get(), grid().cellRect(grid().model()->index(0, 0)).center()) - QPoint(40, 30);
    const auto seen = [&] {
        const QImage picture = window->grab().toImage();
        return picture.pixelColor(place * window->devicePixelRatio());
    };
    EXPECT_LT(seen().saturation(), 10) << "the symbol of a photo on grey";
    server.behaveWell();
    picker->hide();
    picker->show();
    service.succeed();
    ASSERT_TRUE(hasPicture(1));
    EXPECT_TRUE(waitFor([&] { return seen().saturation() > 60; }));
}

TEST_F(PickerPicturesTest, HidingThePickerEndsItsDownloads)
{
    server.behave(Endpoint::preview, {.way = Behaviour::Way::silence});
    openLoaded();
    ASSERT_TRUE(waitFor([this] { return server.begun(Endpoint::preview) == 4; }));
    picker->hide();
    EXPECT_EQ(previews().loads(), 0u);
    EXPECT_TRUE(waitFor([this] { return server.openConnections() == 0; }));
}

TEST_F(PickerPicturesTest, ScrollingAwayEndsWhatIsOutOfSight)
{
    setTemplates(500);
    server.behave(Endpoint::preview, {.way = Behaviour::Way::silence}, 4);
    openLoaded();
    ASSERT_TRUE(waitFor([this] { return server.begun(Endpoint::preview) == 4; }));
    grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->maximum());
    EXPECT_TRUE(hasPicture(500)) << "the silent ones are not waited for";
}

TEST_F(PickerPicturesTest, HostileAnswersAreNoPictures)
{
    const QList<Behaviour> answers{
        {.reply = ServiceReply{.status = 500}},
        {.reply = ServiceReply{}},
        {.reply = ServiceReply{.body = "<html>"}},
        {.reply = ServiceReply{.body = "\x89PNG\r\n\x1a\n", .padding = 100'000'000}},
        {.way = Behaviour::Way::cut},
        {.way = Behaviour::Way::cutHalfway},
        {.way = Behaviour::Way::nonsense},
        redirectingTo("file:///etc/passwd"),
    };
    for (const Behaviour &answer : answers) {
        setTemplates(1);
        server.behave(Endpoint::preview, answer);
        const int before = server.begun(Endpoint::preview);
        openLoaded();
        ASSERT_TRUE(waitFor([&] { return server.begun(Endpoint::preview) > before && previews().loads() == 0; }));
        EXPECT_TRUE(pictureOf(1).isNull());
        EXPECT_TRUE(QDir(cacheFolder.path()).isEmpty(QDir::Files));
        window.reset();
    }
}

TEST_F(PickerPicturesTest, TheNextPickerHasThePicturesFromDisk)
{
    setTemplates(2);
    openLoaded();
    ASSERT_TRUE(hasPicture(1) && hasPicture(2));
    window.reset();
    openLoaded();
    ASSERT_TRUE(hasPicture(1) && hasPicture(2));
    EXPECT_EQ(server.begun(Endpoint::preview), 2);
}

} // namespace
} // namespace lumenfold::test
