/// What of the cards' pictures is kept for the next start, and that it is never taken for anything else.
#include "platform/image/PngEncoder.h"
#include "tests/support/desktop/Wait.h"
#include "tests/unit/image/TestPictures.h"
#include "tests/unit/persistence/PersistenceFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize large{1600, 1200};
constexpr PixelSize cardSize{160, 120};

class Thumbnails : public PersistenceTest {
protected:
    /// A card of the last run that showed its picture.
    void keepCard(const QString &id, const QImage &picture = gradientPicture(large))
    {
        const Image image = Image::fromPixels(picture);
        store->saveImage(image, id);
        store->saveEditorSourceImage(image, id);
        listed.push_back(stacked(id));
        store->writeManifest(listed);
        EXPECT_FALSE(image.thumbnail(cardSize).isNull());
        finishWriting();
        reopen();
    }

    [[nodiscard]] QStringList thumbnails() const
    {
        return QDir(thumbnailFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QString onlyThumbnail() const
    {
        EXPECT_EQ(thumbnails().size(), 1);
        return thumbnailFolder + u'/' + thumbnails().value(0);
    }

    /// Puts other bytes into the only thumbnail.
    void forge(const QByteArray &bytes) const
    {
        QFile file(onlyThumbnail());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    void forge(const QImage &picture) const { forge(PngEncoder::encodeAndWait(picture).value()); }

    [[nodiscard]] QImage shown(const QString &id, PixelSize size = cardSize, ThumbnailFit fit = ThumbnailFit::exact)
    {
        return store->loadImage(id).value().thumbnail(size, fit);
    }

    /// What a card shows whose picture was read itself.
    static QImage scaled(const QImage &picture, PixelSize size = cardSize)
    {
        return Image::fromPng(Image::fromPixels(picture).pngData().value()).thumbnail(size);
    }

    std::vector<PersistedCard> listed;
};

TEST_F(Thumbnails, areShownInTheNextRunInsteadOfReadingThePicture)
{
    keepCard(u"A"_s);
    ASSERT_EQ(QImage(onlyThumbnail()).size(), QSize(160, 120));
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
    // It really is the kept one: another of the same size in its place is believed.
    reopen();
    const QImage other = noisePicture({160, 120});
    forge(other);
    EXPECT_EQ(shown(u"A"_s), other);
    // The picture itself is what it always was.
    EXPECT_EQ(store->loadImage(u"A"_s).value().pixels(), gradientPicture(large));
}

TEST_F(Thumbnails, areNobodyElsesToRead)
{
    keepCard(u"A"_s);
    EXPECT_EQ(QFile::permissions(onlyThumbnail()) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(Thumbnails, areKeptHoweverEarlyOrLateTheyAreMade)
{
    const Image early = Image::fromPixels(gradientPicture(large));
    EXPECT_FALSE(early.thumbnail(cardSize).isNull());
    store->saveImage(early, u"early"_s);
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 1);

    const Image late = Image::fromPixels(gradientPicture(large));
    store->saveImage(late, u"late"_s);
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 1);
    EXPECT_FALSE(late.thumbnail(cardSize).isNull());
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 2);

    // As for a card of a program that did not keep them yet.
    write(u"restored.png"_s, Image::fromPixels(gradientPicture(large)).pngData().value());
    EXPECT_FALSE(shown(u"restored"_s).isNull());
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 3);
}

TEST_F(Thumbnails, areReplacedByWhatIsShownNow)
{
    keepCard(u"A"_s);
    const QString before = onlyThumbnail();
    EXPECT_EQ(shown(u"A"_s, {320, 240}), scaled(gradientPicture(large), {320, 240}));
    finishWriting();
    EXPECT_EQ(onlyThumbnail(), before);
    EXPECT_EQ(QImage(before).size(), QSize(320, 240));
}

TEST_F(Thumbnails, mayBeLargerThanACardInADeckNeeds)
{
    keepCard(u"A"_s);
    EXPECT_EQ(shown(u"A"_s, {150, 113}, ThumbnailFit::atLeast).size(), QSize(160, 120));
    reopen();
    EXPECT_EQ(shown(u"A"_s, {150, 113}, ThumbnailFit::exact).width(), 150);
    reopen();
    EXPECT_EQ(shown(u"A"_s, {60, 45}, ThumbnailFit::atLeast).size(), QSize(60, 45));
    reopen();
    EXPECT_EQ(shown(u"A"_s, {200, 150}, ThumbnailFit::atLeast).size(), QSize(200, 150));
}

TEST_F(Thumbnails, ofACardInADeckDoNotReplaceAWholeOne)
{
    keepCard(u"A"_s);
    EXPECT_EQ(shown(u"A"_s, {60, 45}, ThumbnailFit::atLeast).size(), QSize(60, 45));
    finishWriting();
    EXPECT_EQ(QImage(onlyThumbnail()).size(), QSize(160, 120));
}

TEST_F(Thumbnails, ofAnotherPictureAreNotShown)
{
    keepCard(u"A"_s);
    const QImage other = noisePicture(large);
    // Somebody puts another picture under the name.
    write(u"A.png"_s, Image::fromPixels(other).pngData().value());
    EXPECT_EQ(shown(u"A"_s), scaled(other));
    finishWriting();
    EXPECT_EQ(QImage(onlyThumbnail()).convertToFormat(QImage::Format_RGB32), scaled(other));
}

TEST_F(Thumbnails, ofAnEditedPictureAreNotShown)
{
    const Image before = Image::fromPixels(gradientPicture(large));
    store->saveImage(before, u"A"_s);
    EXPECT_FALSE(before.thumbnail(cardSize).isNull());
    finishWriting();
    const Image edited = Image::fromPixels(noisePicture(large));
    store->saveImage(edited, u"A"_s);
    finishWriting();
    // The one before still lives on, for example in the undo stack.
    EXPECT_FALSE(before.thumbnail({320, 240}).isNull());
    finishWriting();
    reopen();
    EXPECT_EQ(shown(u"A"_s, {320, 240}), scaled(edited.pixels(), {320, 240}));
}

TEST_F(Thumbnails, ofAPictureWithTheSameLengthAndTimeAreNotShown)
{
    const QString path = this->path(u"A.png"_s);
    const auto stamp = [&] {
        const timespec times[2] = {{.tv_sec = 1'000'000, .tv_nsec = 0}, {.tv_sec = 1'000'000, .tv_nsec = 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    };
    // Noise cannot be compressed, so that files of two such pictures are of one length.
    const QByteArray first = Image::fromPixels(noisePicture(large, 1)).pngData().value();
    const QByteArray second = Image::fromPixels(noisePicture(large, 2)).pngData().value();
    ASSERT_EQ(first.size(), second.size());
    write(u"A.png"_s, first);
    stamp();
    EXPECT_EQ(shown(u"A"_s), scaled(noisePicture(large, 1)));
    finishWriting();
    reopen();
    write(u"A.png"_s, second);
    stamp();
    EXPECT_EQ(shown(u"A"_s), scaled(noisePicture(large, 2)));
}

TEST_F(Thumbnails, ofOneCardAreNotAnothers)
{
    const QByteArray png = Image::fromPixels(gradientPicture(large)).pngData().value();
    keepCard(u"A"_s);
    write(u"B.png"_s, png);
    const QString kept = onlyThumbnail();
    EXPECT_FALSE(shown(u"B"_s).isNull());
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 2);
    store->deleteImage(u"B"_s);
    finishWriting();
    EXPECT_EQ(onlyThumbnail(), kept);
}

TEST_F(Thumbnails, thatAreNoneAreNotShown)
{
    keepCard(u"A"_s);
    const QImage right = scaled(gradientPicture(large));
    const QByteArray kept = PngEncoder::encodeAndWait(right).value();
    QByteArray wrongChecksum = kept;
    wrongChecksum[wrongChecksum.size() - 20] = static_cast<char>(~wrongChecksum[wrongChecksum.size() - 20]);
    const QByteArrayList forgeries = {
        QByteArray(),
        "no picture",
        QByteArray("\xff\xd8\xff\xe0 JFIF", 9),
        kept.first(kept.size() / 2),
        kept.chopped(1),
        wrongChecksum,
        PngEncoder::encodeAndWait(noisePicture({161, 120})).value(),
        PngEncoder::encodeAndWait(noisePicture({120, 160})).value(),
        PngEncoder::encodeAndWait(noisePicture({1, 1})).value(),
        PngEncoder::encodeAndWait(plainPicture({3000, 2000})).value(),
        QByteArray(40 * 1024 * 1024, 'x'),
    };
    for (const QByteArray &forgery : forgeries) {
        reopen();
        ASSERT_NO_FATAL_FAILURE(forge(forgery));
        EXPECT_EQ(shown(u"A"_s), right) << forgery.size();
        // And is made good.
        finishWriting();
        EXPECT_EQ(QImage(onlyThumbnail()).convertToFormat(QImage::Format_RGB32), right) << forgery.size();
    }
}

TEST_F(Thumbnails, thatAreNoneAreNotShownInADeckEither)
{
    keepCard(u"A"_s);
    // Somewhat larger than needed, but no smaller copy of the picture.
    for (const QSize size : {QSize(161, 120), QSize(160, 160), QSize(120, 160)}) {
        reopen();
        forge(noisePicture(size));
        EXPECT_EQ(shown(u"A"_s, {150, 113}, ThumbnailFit::atLeast).size(),
                  scaled(gradientPicture(large), {150, 113}).size());
        finishWriting();
    }
    forge("no picture");
    reopen();
    EXPECT_EQ(shown(u"A"_s, {150, 113}, ThumbnailFit::atLeast).width(), 150);
    finishWriting();
    EXPECT_EQ(QImage(onlyThumbnail()).width(), 150);
}

TEST_F(Thumbnails, thatAreNoFilesAreNotWaitedFor)
{
    keepCard(u"A"_s);
    const QString name = onlyThumbnail();
    ASSERT_TRUE(QFile::remove(name));
    ASSERT_EQ(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
    finishWriting();
    reopen();
    EXPECT_TRUE(QFileInfo(name).isFile());
    ASSERT_TRUE(QFile::remove(name));
    ASSERT_TRUE(QFile::link(thumbnailFolder + u"/nowhere"_s, name));
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
    finishWriting();
    reopen();
    ASSERT_TRUE(QFile::remove(name));
    ASSERT_TRUE(QDir().mkdir(name));
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
}

TEST_F(Thumbnails, goWithTheirCards)
{
    keepCard(u"A"_s);
    keepCard(u"B"_s);
    EXPECT_EQ(thumbnails().size(), 2);
    store->deleteImage(u"A"_s);
    finishWriting();
    EXPECT_EQ(thumbnails().size(), 1);
    // With a list that does not name it.
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(thumbnails(), QStringList());
}

TEST_F(Thumbnails, comeBackWithADismissedCard)
{
    const Image image = Image::fromPixels(gradientPicture(large));
    store->saveImage(image, u"A"_s);
    EXPECT_FALSE(image.thumbnail(cardSize).isNull());
    finishWriting();
    store->deleteImage(u"A"_s);
    finishWriting();
    EXPECT_EQ(thumbnails(), QStringList());
    // One that is still being made when the card goes leaves nothing.
    EXPECT_FALSE(image.thumbnail({320, 240}).isNull());
    finishWriting();
    EXPECT_EQ(thumbnails(), QStringList());

    store->saveImage(image, u"A"_s);
    finishWriting();
    EXPECT_EQ(QImage(onlyThumbnail()).size(), QSize(320, 240));
}

TEST_F(Thumbnails, leaveOtherFilesAlone)
{
    keepCard(u"A"_s);
    for (const QString &name : {u"note.txt"_s, u"picture.png"_s}) {
        QFile file(thumbnailFolder + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(thumbnails(), QStringList({u"note.txt"_s, u"picture.png"_s}));
}

TEST_F(Thumbnails, ofSmallPicturesAreNotWorthAFile)
{
    keepCard(u"small"_s, gradientPicture({400, 300}));
    EXPECT_EQ(thumbnails(), QStringList());
    const Image nearlyAsLarge = Image::fromPixels(gradientPicture(large));
    store->saveImage(nearlyAsLarge, u"B"_s);
    EXPECT_FALSE(nearlyAsLarge.thumbnail({1000, 750}).isNull());
    finishWriting();
    EXPECT_EQ(thumbnails(), QStringList());
}

TEST_F(Thumbnails, areDoneWithoutWhereNoneCanBeKept)
{
    ASSERT_TRUE(QDir().mkpath(outside.filePath(u"cache"_s)));
    QFile inTheWay(outside.filePath(u"cache/LumenFold"_s));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    keepCard(u"A"_s);
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
    finishWriting();
    EXPECT_EQ(store->loadImage(u"A"_s).value().pixels(), gradientPicture(large));

    store = std::make_unique<CardPersistence>(cardFolder);
    EXPECT_EQ(shown(u"A"_s), scaled(gradientPicture(large)));
    finishWriting();
    EXPECT_EQ(names(), QStringList({u"A-source.png"_s, u"A.png"_s, u"manifest.json"_s}));
}

TEST_F(Thumbnails, staysAsItIsInAReadOnlyFolder)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the administrator may write everywhere";
    }
    keepCard(u"A"_s);
    ASSERT_TRUE(QFile::setPermissions(thumbnailFolder, QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(shown(u"A"_s, {320, 240}), scaled(gradientPicture(large), {320, 240}));
    finishWriting();
    EXPECT_EQ(QImage(onlyThumbnail()).size(), QSize(160, 120));
    ASSERT_TRUE(QFile::setPermissions(thumbnailFolder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(Thumbnails, ofAPictureThatOutlivesItsStoreAreKeptNowhere)
{
    const Image image = Image::fromPixels(gradientPicture(large));
    store->saveImage(image, u"A"_s);
    store.reset();
    EXPECT_FALSE(image.thumbnail(cardSize).isNull());
    EXPECT_EQ(thumbnails(), QStringList());
}

} // namespace
} // namespace lumenfold::test
