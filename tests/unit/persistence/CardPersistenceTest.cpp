#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/unit/image/TestPictures.h"
#include "tests/unit/persistence/PersistenceFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using CardPersistenceTest = PersistenceTest;

TEST_F(CardPersistenceTest, saysWhereItsFilesAre)
{
    EXPECT_FALSE(QFileInfo::exists(cardFolder));
    EXPECT_EQ(store->directory().toLocalFile(), cardFolder);
    EXPECT_TRUE(QFileInfo(cardFolder).isDir());
    EXPECT_EQ(store->imageURL(u"A"_s).toLocalFile(), path(u"A.png"_s));
    EXPECT_EQ(store->editorSourceImageURL(u"A"_s).toLocalFile(), path(u"A-source.png"_s));
    EXPECT_TRUE(store->imageURL(u"../A"_s).isEmpty());
}

TEST_F(CardPersistenceTest, keepsImagesAndListForTheNextRun)
{
    const Image a = noise(1);
    const Image source = noise(2);
    store->saveImage(a, u"A"_s);
    store->saveEditorSourceImage(source, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    EXPECT_EQ(names(), QStringList({u"A-source.png"_s, u"A.png"_s, u"manifest.json"_s}));
    EXPECT_EQ(contents(u"A.png"_s), a.pngData());

    reopen();
    EXPECT_THAT(store->readManifest(), ElementsAre(stacked(u"A"_s)));
    EXPECT_EQ(store->loadImage(u"A"_s).value().pixels(), a.pixels());
    EXPECT_EQ(store->loadEditorSourceImage(u"A"_s).value().pixels(), source.pixels());
    EXPECT_FALSE(store->loadImage(u"B"_s));
    EXPECT_FALSE(store->loadEditorSourceImage(u"B"_s));
}

TEST_F(CardPersistenceTest, keepsOnePictureUnderBothNamesOnce)
{
    const Image image = noise(1);
    store->saveImage(image, u"A"_s);
    store->saveEditorSourceImage(image, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path(u"A-source.png"_s)).constData(), &status), 0);
    EXPECT_EQ(status.st_nlink, 2U);

    reopen();
    const Image loaded = store->loadImage(u"A"_s).value();
    EXPECT_EQ(store->loadEditorSourceImage(u"A"_s), loaded);

    // An edited image replaces one and not the other.
    store->saveImage(noise(2), u"A"_s);
    finishWriting();
    EXPECT_EQ(contents(u"A.png"_s), noise(2).pngData());
    EXPECT_EQ(contents(u"A-source.png"_s), image.pngData());
}

TEST_F(CardPersistenceTest, writesByItselfSoonAfterwards)
{
    store->saveImage(noise(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    EXPECT_TRUE(waitFor([this] { return exists(u"manifest.json"_s); }));
    EXPECT_TRUE(exists(u"A.png"_s));
}

TEST_F(CardPersistenceTest, writesWhatIsLeftWhenItGoes)
{
    store->saveImage(noise(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    store.reset();
    EXPECT_EQ(names(), QStringList({u"A.png"_s, u"manifest.json"_s}));
}

TEST_F(CardPersistenceTest, returnsAtOnceWhileAnImageIsBeingEncoded)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(noisePicture({400, 300}));
    store->saveImage(image, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    EXPECT_FALSE(store->flush(std::chrono::milliseconds(20)));
    EXPECT_FALSE(image.isEncoded());
    EXPECT_FALSE(exists(u"A.png"_s));
    EXPECT_FALSE(exists(u"manifest.json"_s));
    // Whoever asks meanwhile hears what is going to be.
    EXPECT_EQ(store->loadImage(u"A"_s), image);
    EXPECT_THAT(store->readManifest(), ElementsAre(stacked(u"A"_s)));

    busy.release();
    finishWriting();
    EXPECT_EQ(contents(u"A.png"_s), image.pngData());
    EXPECT_THAT(store->readManifest(), ElementsAre(stacked(u"A"_s)));
}

TEST_F(CardPersistenceTest, aCardDismissedWhileItIsBeingEncodedLeavesNothing)
{
    BusyEncodingPool busy;
    store->saveImage(Image::fromPixels(noisePicture({400, 300})), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    EXPECT_FALSE(store->flush(std::chrono::milliseconds(20)));
    store->deleteImage(u"A"_s);
    store->writeManifest({});
    EXPECT_FALSE(store->loadImage(u"A"_s));
    EXPECT_THAT(store->readManifest(), IsEmpty());

    busy.release();
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));
    EXPECT_EQ(contents(u"manifest.json"_s), "[]");
}

TEST_F(CardPersistenceTest, callsAboutOneIdTakeEffectInTheirOrder)
{
    const Image image = noise(1);
    for (int round = 0; round < 50; ++round) {
        store->saveImage(image, u"A"_s);
        store->writeManifest({stacked(u"A"_s)});
        if (round % 3 == 0) {
            QCoreApplication::processEvents();
        }
        store->deleteImage(u"A"_s);
        store->writeManifest({});
        if (round % 2 == 0) {
            QCoreApplication::processEvents();
        }
        store->saveImage(image, u"A"_s);
        store->writeManifest({stacked(u"A"_s)});
        finishWriting();
        ASSERT_EQ(names(), QStringList({u"A.png"_s, u"manifest.json"_s})) << round;
    }
}

TEST_F(CardPersistenceTest, aDismissedCardsFilesGoAndComeBackWithIt)
{
    const Image image = noise(1);
    const Image source = noise(2);
    store->saveImage(image, u"A"_s);
    store->saveEditorSourceImage(source, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    reopen();

    // A restored card has its bytes nowhere but in the files.
    const Image restored = store->loadImage(u"A"_s).value();
    const Image restoredSource = store->loadEditorSourceImage(u"A"_s).value();
    store->deleteImage(u"A"_s);
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));

    store->saveImage(restored, u"A"_s);
    store->saveEditorSourceImage(restoredSource, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    EXPECT_EQ(contents(u"A.png"_s), image.pngData());
    EXPECT_EQ(contents(u"A-source.png"_s), source.pngData());
}

TEST_F(CardPersistenceTest, aSavedImageLeavesItsBytesToItsFile)
{
    const Image image = Image::fromPixels(noisePicture({24, 18}));
    image.releasePixelsWhenEncoded();
    store->saveImage(image, u"A"_s);
    store->saveEditorSourceImage(image, u"A"_s);
    store->saveImage(image, u"B"_s);
    finishWriting();
    // The card may go that had the file.
    store->deleteImage(u"A"_s);
    finishWriting();
    EXPECT_EQ(image.pixels(), noisePicture({24, 18}));
    store->saveImage(noise(2), u"B"_s);
    store->saveImage(image, u"A"_s);
    finishWriting();
    EXPECT_EQ(contents(u"A.png"_s), image.pngData());
    ASSERT_TRUE(QFile::resize(path(u"A.png"_s), 10));
    EXPECT_EQ(image.pixels(), noisePicture({24, 18})) << "the bytes that were kept are still its own";
}

TEST_F(CardPersistenceTest, moreDismissedCardsThanFilesMayBeOpenComeBack)
{
    constexpr unsigned count = 300;
    std::vector<PersistedCard> cards;
    for (unsigned number = 0; number < count; ++number) {
        cards.push_back(stacked(QString::number(number)));
        store->saveImage(noise(number), cards.back().id);
        store->saveEditorSourceImage(noise(number + count), cards.back().id);
    }
    store->writeManifest(cards);
    finishWriting();
    reopen();
    std::vector<Image> images;
    std::vector<Image> sources;
    for (const PersistedCard &card : store->readManifest()) {
        images.push_back(store->loadImage(card.id).value());
        sources.push_back(store->loadEditorSourceImage(card.id).value());
    }
    ASSERT_EQ(images.size(), count);
    for (const PersistedCard &card : cards) {
        store->deleteImage(card.id);
    }
    store->writeManifest({});
    finishWriting();
    ASSERT_EQ(names(), QStringList(u"manifest.json"_s));

    for (unsigned number = 0; number < count; ++number) {
        ASSERT_EQ(images[number].pngData(), noise(number).pngData()) << number;
        ASSERT_EQ(sources[number].pngData(), noise(number + count).pngData()) << number;
    }
}

TEST_F(CardPersistenceTest, strayImagesGoAndOtherFilesStay)
{
    write(u"stray.png"_s, "stray");
    write(u".hidden.png"_s, "stray");
    write(u"A-source.png"_s, noise(1).pngData().value());
    write(u"A-source-source.png"_s, "stray");
    write(u"stray.txt"_s, "stays");
    write(u"stray.PNG"_s, "stays");
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), path(u"link.png"_s)));
    ASSERT_TRUE(QDir(cardFolder).mkdir(u"folder.png"_s));
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    EXPECT_THAT(names(), ::testing::UnorderedElementsAre(u"A-source.png"_s, u"folder.png"_s, u"manifest.json"_s,
                                                         u"stray.PNG"_s, u"stray.txt"_s));
}

TEST_F(CardPersistenceTest, aListOfNothingRemovesEveryImage)
{
    store->saveImage(noise(1), u"A"_s);
    store->saveImage(noise(2), u"B"_s);
    finishWriting();
    ASSERT_TRUE(exists(u"A.png"_s) && exists(u"B.png"_s));
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));
}

TEST_F(CardPersistenceTest, anImageSavedAfterAListStays)
{
    store->writeManifest({});
    store->saveImage(noise(1), u"A"_s);
    finishWriting();
    EXPECT_TRUE(exists(u"A.png"_s));
    store->saveImage(noise(2), u"B"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    EXPECT_FALSE(exists(u"B.png"_s));
}

TEST_F(CardPersistenceTest, anImageThatCannotBeEncodedLeavesTheOneBefore)
{
    store->saveImage(noise(1), u"A"_s);
    finishWriting();
    store->saveImage(Image::withoutRepresentation({10, 10}), u"A"_s);
    store->saveImage(Image(), u"B"_s);
    store->writeManifest({stacked(u"A"_s), stacked(u"B"_s)});
    finishWriting();
    EXPECT_EQ(contents(u"A.png"_s), noise(1).pngData());
    EXPECT_FALSE(exists(u"B.png"_s));
}

TEST_F(CardPersistenceTest, aFrameThatCannotBeWrittenLeavesTheListBefore)
{
    store->writeManifest({});
    finishWriting();
    store->writeManifest({{.id = u"A"_s, .isPinned = true, .frame = Rect{0, 0, std::nan(""), 1}}});
    finishWriting();
    EXPECT_EQ(contents(u"manifest.json"_s), "[]");
}

TEST_F(CardPersistenceTest, whatAKillLeftIsReplaced)
{
    write(u".writing.tmp"_s, QByteArray(1000, 'x'));
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));
}

TEST_F(CardPersistenceTest, theFolderIsMadeAgainWhenItIsGone)
{
    store->saveImage(noise(1), u"A"_s);
    finishWriting();
    ASSERT_TRUE(QDir(cardFolder).removeRecursively());
    store->saveImage(noise(2), u"B"_s);
    store->writeManifest({stacked(u"B"_s)});
    finishWriting();
    EXPECT_EQ(names(), QStringList({u"B.png"_s, u"manifest.json"_s}));
}

TEST_F(CardPersistenceTest, twoHundredCardsComeAndGo)
{
    std::vector<PersistedCard> cards;
    std::vector<Image> images;
    for (unsigned number = 0; number < 200; ++number) {
        cards.push_back(stacked(QString::number(number)));
        images.push_back(noise(number, {4, 3}));
    }
    for (std::size_t number = 0; number < cards.size(); ++number) {
        store->saveImage(images[number], cards[number].id);
        store->saveEditorSourceImage(images[number], cards[number].id);
    }
    store->writeManifest(cards);
    // Dismissed one by one, with a list each time: beyond what the program does.
    for (std::size_t number = 0; number < cards.size(); ++number) {
        store->deleteImage(cards[number].id);
        store->writeManifest({cards.begin() + static_cast<std::ptrdiff_t>(number) + 1, cards.end()});
    }
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));
}

} // namespace
} // namespace lumenfold::test
