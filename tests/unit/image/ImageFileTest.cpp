#include "platform/image/Image.h"
#include "platform/image/PngFile.h"
#include "tests/unit/image/TestPictures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <thread>
#include <vector>

namespace lumenfold {
namespace {

class ImageFile : public ::testing::Test {
protected:
    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    QString writePicture(const QString &name = QStringLiteral("picture.png")) { return write(name, m_png); }

    /// The bytes of a new file at `path` into which the picture was written, or its error.
    static QByteArray written(const Image &image, const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered));
        const std::optional<FileWriter> write = image.pngWriter();
        if (!write) {
            return "nothing to write";
        }
        const auto result = (*write)(file);
        if (!result) {
            EXPECT_FALSE(result.error().isEmpty());
            return "error";
        }
        EXPECT_TRUE(file.seek(0));
        return file.readAll();
    }
    [[nodiscard]] QByteArray written(const Image &image) const
    {
        return written(image, m_folder.filePath(QStringLiteral("written.png")));
    }

    QTemporaryDir m_folder;
    const QImage m_pixels = test::gradientPicture({40, 30});
    const QByteArray m_png = Image::fromPixels(m_pixels).pngData().value();
};

TEST_F(ImageFile, isReadWhenAskedFor)
{
    const Image image = Image::fromPngFile(writePicture());
    EXPECT_EQ(image.pixelSize(), (PixelSize{40, 30}));
    EXPECT_EQ(image.size(), (Size{40, 30}));
    EXPECT_TRUE(image.isEncoded());
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_EQ(image.pngData(), m_png);
    EXPECT_EQ(image.pngData(), m_png);
    EXPECT_EQ(image.pixels(), m_pixels);
    EXPECT_EQ(image.thumbnail({20, 20}).size(), QSize(20, 15));
}

TEST_F(ImageFile, staysWhenTheFileIsDeleted)
{
    const QString path = writePicture();
    const Image image = Image::fromPngFile(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(image.pngData(), m_png);
    EXPECT_EQ(image.pixels(), m_pixels);
}

TEST_F(ImageFile, staysWhenTheFileIsReplacedByItself)
{
    const QString path = writePicture();
    const Image image = Image::fromPngFile(path);
    write(QStringLiteral("picture.png"), image.pngData().value());
    EXPECT_EQ(image.pngData(), m_png);
}

TEST_F(ImageFile, mayTakeTheBytesOfAPicture)
{
    const Image image = Image::fromPixels(m_pixels);
    image.releasePixelsWhenEncoded();
    const QString path = write(QStringLiteral("picture.png"), image.pngData().value());
    image.leaveBytesToFile(path);
    EXPECT_EQ(image.pngData(), m_png);
    EXPECT_EQ(image.pixels(), m_pixels);
    EXPECT_TRUE(image.isEncoded());
    // They really are there and nowhere else.
    ASSERT_TRUE(QFile::resize(path, 100));
    EXPECT_TRUE(image.pixels().isNull());
}

TEST_F(ImageFile, takesNoBytesThatItDoesNotHave)
{
    const Image image = Image::fromPixels(m_pixels);
    const QString path = write(QStringLiteral("other.png"), "other bytes");
    image.leaveBytesToFile(path);
    image.leaveBytesToFile(m_folder.filePath(QStringLiteral("missing.png")));
    Image().leaveBytesToFile(path);
    Image::withoutRepresentation({1, 1}).leaveBytesToFile(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(image.pngData(), m_png);
}

TEST_F(ImageFile, canBeLetGoWhenItsBytesAreKept)
{
    const QString path = writePicture();
    std::vector<Image> others;
    for (int count = 0; count < PngFile::maximumOpenFiles; ++count) {
        others.push_back(Image::fromPngFile(path));
    }
    const Image kept = Image::fromPngFile(path);
    const Image lost = Image::fromPngFile(path);
    kept.keepBytesOfFile();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(kept.pngData(), m_png);
    EXPECT_EQ(kept.pixels(), m_pixels);
    EXPECT_FALSE(lost.pngData());

    // Another file of that name is not taken for it.
    writePicture();
    EXPECT_FALSE(lost.pngData());
}

TEST_F(ImageFile, isWrittenToAnotherFile)
{
    const Image stored = Image::fromPngFile(writePicture());
    EXPECT_EQ(written(stored), m_png);
    EXPECT_EQ(written(stored), m_png);
    EXPECT_EQ(stored.pngData(), m_png);
    EXPECT_EQ(written(Image::fromPixels(m_pixels)), m_png);
    EXPECT_EQ(written(Image::fromPng(m_png)), m_png);
    EXPECT_EQ(written(Image()), "nothing to write");
    EXPECT_EQ(written(Image::withoutRepresentation({1, 1})), "nothing to write");
}

TEST_F(ImageFile, isWrittenToAFileThatTheSystemCannotCopyTo)
{
    // The kernel copies between ordinary files only; a device takes what is written.
    const QByteArray large = Image::fromPixels(test::noisePicture({800, 600})).pngData().value();
    const Image image = Image::fromPngFile(write(QStringLiteral("large.png"), large));
    QFile pipe;
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ASSERT_TRUE(pipe.open(ends[1], QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
    QByteArray received;
    std::thread reader([&received, from = ends[0]] {
        QFile end;
        EXPECT_TRUE(end.open(from, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
        received = end.readAll();
    });
    const std::optional<FileWriter> write = image.pngWriter();
    EXPECT_TRUE(write && (*write)(pipe));
    pipe.close();
    reader.join();
    EXPECT_EQ(received, large);
}

TEST_F(ImageFile, isNotWrittenWhenItIsNotThereAnyMore)
{
    const QString path = writePicture();
    const Image image = Image::fromPngFile(path);
    const std::optional<FileWriter> write = image.pngWriter();
    ASSERT_TRUE(write);
    ASSERT_TRUE(QFile::resize(path, 100));
    EXPECT_EQ(written(image), "error");
    ASSERT_TRUE(QFile::resize(path, 0));
    EXPECT_EQ(written(image), "nothing to write");
    QFile target(m_folder.filePath(QStringLiteral("late.png")));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_FALSE((*write)(target));
}

TEST_F(ImageFile, thatIsCutOffIsNoPicture)
{
    const QByteArray large = Image::fromPixels(test::noisePicture({800, 600})).pngData().value();
    ASSERT_GT(large.size(), PngFile::maximumProvenBytes);
    EXPECT_FALSE(Image::fromPngFile(write(QStringLiteral("whole.png"), large)).isNull());
    EXPECT_FALSE(Image::fromPngFile(write(QStringLiteral("longer.png"), large + "and more")).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("cut.png"), large.chopped(1))).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("half.png"), large.first(large.size() / 2))).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("small.png"), m_png.chopped(1))).isNull());
}

TEST_F(ImageFile, thatIsShortenedBehindOurBackGivesNoPixels)
{
    const QString path = writePicture();
    const Image image = Image::fromPngFile(path);
    ASSERT_TRUE(QFile::resize(path, 100));
    EXPECT_TRUE(image.pixels().isNull());
    ASSERT_TRUE(QFile::resize(path, 0));
    EXPECT_FALSE(image.pngData());
    EXPECT_TRUE(image.thumbnail({10, 10}).isNull());
}

TEST_F(ImageFile, thatBecomesAnotherPictureIsNotThisOneAnyMore)
{
    const QString path = writePicture();
    const Image image = Image::fromPngFile(path);
    write(QStringLiteral("picture.png"), Image::fromPixels(test::gradientPicture({41, 30})).pngData().value());
    EXPECT_FALSE(image.pngData());
    EXPECT_TRUE(image.pixels().isNull());
}

TEST_F(ImageFile, thatIsNoPngIsNoPicture)
{
    EXPECT_TRUE(Image::fromPngFile(m_folder.filePath(QStringLiteral("missing.png"))).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("empty.png"), {})).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("text.png"), "no picture")).isNull());
    EXPECT_TRUE(Image::fromPngFile(write(QStringLiteral("start.png"), m_png.first(30))).isNull());
    EXPECT_TRUE(Image::fromPngFile(m_folder.path()).isNull());
    EXPECT_TRUE(Image::fromPngFile({}).isNull());
}

TEST_F(ImageFile, thatIsAPipeIsNotWaitedFor)
{
    const QString path = m_folder.filePath(QStringLiteral("pipe.png"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_TRUE(Image::fromPngFile(path).isNull());
}

TEST_F(ImageFile, holdsOnlySoManyFilesOpen)
{
    const QString path = writePicture();
    std::vector<Image> images;
    for (int count = 0; count < PngFile::maximumOpenFiles + 20; ++count) {
        images.push_back(Image::fromPngFile(path));
        ASSERT_FALSE(images.back().isNull());
    }
    const QStringList descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
    EXPECT_LT(descriptors.size(), PngFile::maximumOpenFiles + 50);
    EXPECT_EQ(images.front().pngData(), m_png);
    EXPECT_EQ(images.back().pngData(), m_png);

    images.clear();
    const QStringList left = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
    EXPECT_LT(left.size(), 50);
    EXPECT_TRUE(PngFile::open(path));
}

} // namespace
} // namespace lumenfold
