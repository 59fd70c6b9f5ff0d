/// The controller of the cards and their store together, from one run to the next.
#include "cards/CardPersistence.h"
#include "tests/unit/cards/CardsFixture.h"
#include "tests/unit/image/TestPictures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <limits>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;

class RestoredCards : public CardsTest {
protected:
    RestoredCards() { startAgain(); }
    ~RestoredCards() override { controller.reset(); }

    void startAgain()
    {
        controller.reset();
        persistence.reset();
        persistence = std::make_unique<CardPersistence>(folder.filePath(u"cards"_s));
        controller = std::make_unique<PreviewWindowController>(
            PreviewWindowController::Collaborators{.panels = panels,
                                                   .monitors = monitors,
                                                   .screens = screens,
                                                   .config = config,
                                                   .queue = queue,
                                                   .views = views,
                                                   .store = persistence.get()});
    }

    void restart()
    {
        startAgain();
        controller->restore();
        settle();
    }

    [[nodiscard]] QStringList files()
    {
        EXPECT_TRUE(persistence->flush());
        return QDir(folder.filePath(u"cards"_s)).entryList(QDir::Files | QDir::Hidden);
    }

    void write(const QString &name, const QByteArray &bytes)
    {
        persistence->directory();
        QFile file(folder.filePath(u"cards/"_s + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static QByteArray png(unsigned seed) { return Image::fromPixels(noisePicture({24, 18}, seed)).pngData().value(); }

    QTemporaryDir folder;
    std::unique_ptr<CardPersistence> persistence;
};

TEST_F(RestoredCards, comeBackAsTheManifestSays)
{
    write(u"A.png"_s, png(1));
    write(u"B.png"_s, png(2));
    write(u"manifest.json"_s,
          R"([{"id":"A","isPinned":false},{"id":"B","isPinned":true,"frame":[[100,200],[404,344]]}])");
    restart();
    ASSERT_EQ(ids(), QStringList({u"A"_s, u"B"_s}));
    EXPECT_EQ(card(u"A"_s)->variant, PreviewCardVariant::stack);
    EXPECT_EQ(card(u"B"_s)->variant, PreviewCardVariant::pinned);
    EXPECT_EQ(panel(u"B"_s).frame(), (Rect{100, 200, 404, 344}));
    EXPECT_EQ(model(u"A"_s).image().pixels(), noisePicture({24, 18}, 1));
    EXPECT_EQ(model(u"A"_s).editorSourceImage(), model(u"A"_s).image());
    EXPECT_EQ(model(u"A"_s).editorSourceId(), u"A"_s);
}

TEST_F(RestoredCards, comeBackFromTheirOwnFiles)
{
    const Image image = Image::fromPixels(noisePicture({40, 30}, 1));
    const Image source = Image::fromPixels(noisePicture({40, 30}, 2));
    controller->show(image, {.editorSourceImage = source, .editorSourceId = u"S"_s, .id = u"A"_s});
    controller->showPinnedCard(image, {.frame = Rect{-3000.25, 7000, 404, 344}, .id = u"B"_s});
    controller->show(source, {.id = u"C"_s});
    restart();
    ASSERT_EQ(ids(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(model(u"A"_s).image().pixels(), image.pixels());
    EXPECT_EQ(model(u"A"_s).editorSourceImage().pixels(), source.pixels());
    EXPECT_EQ(model(u"A"_s).editorSourceId(), u"S"_s);
    EXPECT_EQ(panel(u"B"_s).frame(), (Rect{-3000.25, 7000, 404, 344}));
    EXPECT_EQ(model(u"B"_s).editorSourceImage(), model(u"B"_s).image());
    // And once more from the files of files.
    const QStringList before = files();
    restart();
    EXPECT_EQ(ids(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(files(), before);
}

TEST_F(RestoredCards, areNoneWithOneBadEntryAndTheImagesGo)
{
    write(u"A.png"_s, png(1));
    write(u"B.png"_s, png(2));
    write(u"manifest.json"_s, R"([{"id":"A","isPinned":false},{"id":"B"}])");
    restart();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(files(), QStringList(u"manifest.json"_s));
}

TEST_F(RestoredCards, areNoneWithoutAManifest)
{
    restart();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(files(), QStringList(u"manifest.json"_s));
}

TEST_F(RestoredCards, leaveOutTheOnesWhoseImageIsGoneOrBroken)
{
    write(u"A.png"_s, png(1).chopped(10));
    write(u"A-source.png"_s, png(1));
    write(u"B.png"_s, png(2));
    write(u"B-source.png"_s, png(2).chopped(10));
    write(u"manifest.json"_s,
          R"([{"id":"A","isPinned":false},{"id":"B","isPinned":false},{"id":"C","isPinned":false},
              {"id":"../A","isPinned":false},{"id":"","isPinned":true}])");
    restart();
    ASSERT_EQ(ids(), QStringList(u"B"_s));
    EXPECT_EQ(model(u"B"_s).editorSourceImage(), model(u"B"_s).image());
    EXPECT_THAT(files(), ::testing::UnorderedElementsAre(u"B.png"_s, u"B-source.png"_s, u"manifest.json"_s));
    EXPECT_EQ(persistence->readManifest().size(), 1);
}

TEST_F(RestoredCards, standWhereverTheirFrameSays)
{
    const double huge = std::numeric_limits<double>::max();
    write(u"A.png"_s, png(1));
    write(u"B.png"_s, png(2));
    write(u"manifest.json"_s, R"([{"id":"A","isPinned":true,"frame":[[1.7976931348623157e308,-1.7976931348623157e308],)"
                              R"([1e308,1e-320]]},{"id":"B","isPinned":true,"frame":[[0,0],[-5,0]]}])");
    restart();
    ASSERT_EQ(ids(), QStringList({u"A"_s, u"B"_s}));
    EXPECT_EQ(panel(u"A"_s).frame(), (Rect{huge, -huge, 1e308, 1e-320}));
    EXPECT_EQ(panel(u"B"_s).frame(), (Rect{0, 0, -5, 0}));
    EXPECT_EQ(persistence->readManifest().size(), 2);
}

TEST_F(RestoredCards, goFromTheFolderAtOnceWhenDismissed)
{
    controller->show(Image::fromPixels(noisePicture({40, 30}, 1)), {.id = u"A"_s});
    controller->show(Image::fromPixels(noisePicture({40, 30}, 2)), {.id = u"B"_s});
    EXPECT_EQ(files().size(), 5);
    model(u"A"_s).onDismiss();
    EXPECT_THAT(files(), ::testing::UnorderedElementsAre(u"B.png"_s, u"B-source.png"_s, u"manifest.json"_s));
    restart();
    EXPECT_EQ(ids(), QStringList(u"B"_s));
}

} // namespace
} // namespace lumenfold::test
