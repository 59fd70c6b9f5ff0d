/// What is found in the card folder was perhaps not put there by this program, and what it wants to put there may find
/// no room.
#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"
#include "tests/unit/persistence/PersistenceFixture.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DamagedCardFolder : public PersistenceTest {
protected:
    void expectNoImage(const QByteArray &bytes)
    {
        write(u"A.png"_s, bytes);
        EXPECT_FALSE(store->loadImage(u"A"_s));
    }

    const QByteArray png = Image::fromPixels(gradientPicture({60, 40})).pngData().value();
};

TEST_F(DamagedCardFolder, filesThatAreNoWholePictureAreNoImages)
{
    expectNoImage({});
    expectNoImage("text");
    expectNoImage(png.first(20));
    expectNoImage(png.first(png.size() / 2));
    expectNoImage(png.chopped(1));
    QByteArray flipped = png;
    flipped[flipped.size() / 2] = static_cast<char>(flipped[flipped.size() / 2] ^ 1);
    expectNoImage(flipped);
    expectNoImage(pngFile({headerChunk({.width = 60'000, .height = 60'000}), pixelChunk("x"), {"IEND", {}}}));
    expectNoImage(pngFile({headerChunk({.width = 0, .height = 10}), pixelChunk("x"), {"IEND", {}}}));
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    ASSERT_TRUE(gradientPicture({60, 40}).save(&buffer, "BMP"));
    expectNoImage(jpeg);

    write(u"A.png"_s, png + "something behind the end");
    EXPECT_TRUE(store->loadImage(u"A"_s));
}

TEST_F(DamagedCardFolder, aLargeFileThatIsCutOffIsNoImage)
{
    const QByteArray large = Image::fromPixels(noisePicture({1200, 900})).pngData().value();
    ASSERT_GT(large.size(), 2 * 1024 * 1024);
    write(u"A.png"_s, large);
    EXPECT_TRUE(store->loadImage(u"A"_s));
    expectNoImage(large.chopped(1));
    expectNoImage(large.first(large.size() / 2));
    write(u"A.png"_s, large + QByteArray(100, 'x'));
    EXPECT_EQ(store->loadImage(u"A"_s).value().pixels(), noisePicture({1200, 900}));
}

TEST_F(DamagedCardFolder, aFileWithoutEndIsNotRead)
{
    write(u"A.png"_s, png);
    // It takes no room on the disk, but would in memory.
    ASSERT_TRUE(QFile::resize(path(u"A.png"_s), 1LL << 40));
    EXPECT_FALSE(store->loadImage(u"A"_s));
    write(u"manifest.json"_s, "[]");
    ASSERT_TRUE(QFile::resize(path(u"manifest.json"_s), 1LL << 40));
    EXPECT_THAT(store->readManifest(), IsEmpty());
}

TEST_F(DamagedCardFolder, whatIsNoFileIsNoImage)
{
    store->directory();
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), path(u"A.png"_s)));
    ASSERT_TRUE(QFile::link(path(u"B.png"_s), path(u"B.png"_s)));
    ASSERT_TRUE(QDir(cardFolder).mkdir(u"C.png"_s));
    ASSERT_EQ(mkfifo(QFile::encodeName(path(u"D.png"_s)).constData(), 0600), 0);
    ASSERT_EQ(mkfifo(QFile::encodeName(path(u"manifest.json"_s)).constData(), 0600), 0);
    for (const QString &id : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
        EXPECT_FALSE(store->loadImage(id));
    }
    EXPECT_THAT(store->readManifest(), IsEmpty());

    // They are no obstacle either, but for a folder, which nobody would want to lose.
    const Image image = noise(1);
    for (const QString &id : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
        store->saveImage(image, id);
    }
    store->writeManifest({stacked(u"A"_s), stacked(u"B"_s), stacked(u"C"_s), stacked(u"D"_s)});
    finishWriting();
    for (const QString &id : {u"A"_s, u"B"_s, u"D"_s}) {
        EXPECT_EQ(contents(id + u".png"_s), image.pngData());
    }
    EXPECT_TRUE(QFileInfo(path(u"C.png"_s)).isDir());
    EXPECT_EQ(store->readManifest().size(), 4);
    EXPECT_FALSE(exists(u".writing.tmp"_s));
}

TEST_F(DamagedCardFolder, idsNeverLeadOutside)
{
    QFile other(outside.filePath(u"other.png"_s));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly) && other.write(png) > 0);
    other.close();
    store->directory();
    const QString up = u"../../../other"_s;
    const QString absolute = outside.filePath(u"other"_s);
    const QList<QString> ids{up, absolute, QString(), u".."_s, u"."_s, u"a/b"_s, u"other\0x"_s, QString(400, u'x')};
    ASSERT_EQ(QFileInfo(path(up + u".png"_s)).canonicalFilePath(), QFileInfo(other).canonicalFilePath());
    std::vector<PersistedCard> cards;
    for (const QString &id : ids) {
        EXPECT_FALSE(store->loadImage(id));
        EXPECT_FALSE(store->loadEditorSourceImage(id));
        cards.push_back(stacked(id));
        store->saveImage(noise(1), id);
        store->saveEditorSourceImage(noise(1), id);
    }
    store->writeManifest(cards);
    finishWriting();
    EXPECT_EQ(store->readManifest(), cards);
    for (const QString &id : ids) {
        store->deleteImage(id);
    }
    store->writeManifest({});
    finishWriting();
    EXPECT_EQ(names(), QStringList(u"manifest.json"_s));
    EXPECT_EQ(QDir(outside.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList({u"data"_s, u"other.png"_s}));
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    EXPECT_EQ(other.readAll(), png);
}

TEST_F(DamagedCardFolder, anIdThatComesAgainIsOneCard)
{
    write(u"manifest.json"_s,
          R"([{"id":"A","isPinned":false},{"id":"B","isPinned":false},{"id":"A","isPinned":true}])");
    EXPECT_THAT(store->readManifest(), ElementsAre(PersistedCard{.id = u"A"_s}, PersistedCard{.id = u"B"_s}));
}

TEST_F(DamagedCardFolder, aMillionEntriesAreRefusedSoon)
{
    QByteArray million = "[" + QByteArray(R"({"id":"A","isPinned":false},)").repeated(1'000'000);
    million.back() = ']';
    write(u"manifest.json"_s, million);
    QElapsedTimer timer;
    timer.start();
    EXPECT_THAT(store->readManifest(), IsEmpty());
    EXPECT_LT(timer.elapsed(), 1000);
}

TEST_F(DamagedCardFolder, aFileInPlaceOfTheFolderIsNoEndOfTheWorld)
{
    QDir().mkpath(QFileInfo(cardFolder).path());
    QFile file(cardFolder);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
    file.close();
    store->saveImage(noise(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    store->deleteImage(u"A"_s);
    finishWriting();
    EXPECT_FALSE(store->loadImage(u"A"_s));
    EXPECT_THAT(store->readManifest(), IsEmpty());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "mine");
}

TEST_F(DamagedCardFolder, aLinkToNowhereInPlaceOfTheFolderLeadsNowhere)
{
    QDir().mkpath(QFileInfo(cardFolder).path());
    const QString nowhere = outside.filePath(u"nowhere"_s);
    ASSERT_TRUE(QFile::link(nowhere, cardFolder));
    store->saveImage(noise(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    store->deleteImage(u"A"_s);
    finishWriting();
    EXPECT_FALSE(store->loadImage(u"A"_s));
    EXPECT_THAT(store->readManifest(), IsEmpty());
    EXPECT_FALSE(QFileInfo::exists(nowhere));
    EXPECT_EQ(QFileInfo(cardFolder).symLinkTarget(), nowhere);
}

/// The process as somebody whom the folder's rights bind, which they do not bind the administrator.
class OrdinaryUser {
public:
    /// Gives the user everything in that folder.
    explicit OrdinaryUser(const QString &folder)
    {
        if (geteuid() != 0) {
            return;
        }
        QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            give(entries.next());
        }
        give(folder);
        EXPECT_EQ(seteuid(nobody), 0);
        m_isAdministrator = true;
    }
    ~OrdinaryUser()
    {
        if (m_isAdministrator) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    static void give(const QString &path)
    {
        EXPECT_EQ(chown(QFile::encodeName(path).constData(), nobody, static_cast<gid_t>(-1)), 0);
    }

    bool m_isAdministrator = false;
};

TEST_F(DamagedCardFolder, aFolderThatMayNotBeWrittenKeepsWhatItHas)
{
    const Image image = noise(1);
    store->saveImage(image, u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    const OrdinaryUser user(outside.path());
    ASSERT_EQ(chmod(QFile::encodeName(cardFolder).constData(), 0500), 0);
    store->saveImage(noise(2), u"A"_s);
    store->saveImage(noise(2), u"B"_s);
    store->deleteImage(u"A"_s);
    store->writeManifest({});
    finishWriting();
    reopen();
    EXPECT_THAT(store->readManifest(), ElementsAre(stacked(u"A"_s)));
    EXPECT_EQ(store->loadImage(u"A"_s).value().pngData(), image.pngData());
    EXPECT_EQ(names(), QStringList({u"A.png"_s, u"manifest.json"_s}));

    // What may not be read is not there.
    ASSERT_EQ(chmod(QFile::encodeName(cardFolder).constData(), 0), 0);
    EXPECT_THAT(store->readManifest(), IsEmpty());
    EXPECT_FALSE(store->loadImage(u"B"_s));
    ASSERT_EQ(chmod(QFile::encodeName(cardFolder).constData(), 0700), 0);
}

class FullDisk : public DamagedCardFolder {
protected:
    void SetUp() override
    {
        store->directory();
        if (mount("tmpfs", QFile::encodeName(cardFolder).constData(), "tmpfs", 0, "size=256k") != 0) {
            GTEST_SKIP() << "a small disk can only be made by the administrator";
        }
        isMounted = true;
    }
    void TearDown() override
    {
        store.reset();
        if (isMounted) {
            EXPECT_EQ(umount(QFile::encodeName(cardFolder).constData()), 0);
        }
    }

    /// Some 150 kB of the 256 that there are.
    static Image large(unsigned seed) { return noise(seed, {250, 200}); }

    bool isMounted = false;
};

TEST_F(FullDisk, keepsTheCardsThatItHasRoomFor)
{
    store->saveImage(large(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    store->saveImage(large(2), u"B"_s);
    store->writeManifest({stacked(u"A"_s), stacked(u"B"_s)});
    finishWriting();
    EXPECT_EQ(names(), QStringList({u"A.png"_s, u"manifest.json"_s}));
    reopen();
    EXPECT_EQ(store->readManifest().size(), 2);
    EXPECT_EQ(store->loadImage(u"A"_s).value().pngData(), large(1).pngData());
    EXPECT_FALSE(store->loadImage(u"B"_s));
}

TEST_F(FullDisk, takesNewCardsWhenOldOnesAreDismissed)
{
    store->saveImage(large(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    finishWriting();
    QFile filler(path(u"filler"_s));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) {
    }
    filler.close();

    store->deleteImage(u"A"_s);
    store->writeManifest({stacked(u"B"_s)});
    finishWriting();
    // The list found no room until the image was gone.
    EXPECT_THAT(store->readManifest(), ElementsAre(stacked(u"B"_s)));
    EXPECT_FALSE(exists(u"A.png"_s));
    store->saveImage(noise(2), u"B"_s);
    finishWriting();
    EXPECT_EQ(contents(u"B.png"_s), noise(2).pngData());
}

} // namespace
} // namespace lumenfold::test
