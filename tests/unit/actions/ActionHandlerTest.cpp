#include "app/actions/ActionHandler.h"

#include "app/configuration/AppConfig.h"
#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/unit/FileSizeLimit.h"
#include "tests/support/unit/LogWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace lumenfold {
namespace {

using test::FakePasteboard;
using Call = FakePasteboard::Call;
using ::testing::ElementsAre;

QImage filledPixels(QColor color, QSize size = {40, 30})
{
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(color);
    return pixels;
}

QImage noisePixels(QSize size)
{
    QImage pixels(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            pixels.setPixel(x, y, 0xff000000 | random.generate());
        }
    }
    return pixels;
}

Image encodedImage(const QImage &pixels)
{
    Image image = Image::fromPixels(pixels);
    EXPECT_TRUE(image.pngData());
    return image;
}

/// The same picture as a card of an earlier run has it.
Image storedImage(const Image &image, const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_GT(file.write(image.pngData().value()), 0);
    file.close();
    return Image::fromPngFile(path);
}

/// A picture with pixels that no PNG of ours may hold: a side is too long.
Image imageThatCannotBeEncoded()
{
    Image image = Image::fromPixels(filledPixels(Qt::red, {32769, 1}));
    EXPECT_FALSE(image.pngData());
    EXPECT_FALSE(image.pixels().isNull());
    return image;
}

class ActionHandlerTest : public ::testing::Test {
protected:
    ActionHandlerTest() { saveInto(m_folder.path()); }

    void saveInto(const QString &folder)
    {
        m_files.directories.insert(folder);
        m_defaults.setString(AppConfig::saveDirectoryKey, folder);
    }

    [[nodiscard]] QStringList savedFiles() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    [[nodiscard]] QString savedFile(const QString &name) const { return m_folder.filePath(name); }

    /// Names the one line that a failed save writes, whatever the system's words for the reason are.
    static void expectOneSaveError()
    {
        const QStringList lines = test::logLines();
        ASSERT_EQ(lines.size(), 1);
        EXPECT_THAT(lines.first().toStdString(), ::testing::MatchesRegex("LumenFold save error: .+"));
        EXPECT_FALSE(lines.first().contains(QStringLiteral("Unknown error")));
        test::expectLogLine(lines.first());
    }

    void expectFullDiskToKeepTheEarlierFile(const Image &image)
    {
        ASSERT_TRUE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));
        std::optional<QString> path;
        {
            const test::FileSizeLimit limit(1000);
            path = m_actions.saveToDisk(image);
        }

        EXPECT_FALSE(path);
        expectOneSaveError();
        EXPECT_EQ(savedFiles().size(), 1);
        EXPECT_EQ(QImage(savedFile(savedFiles().first())), filledPixels(Qt::red));
    }

    QTemporaryDir m_folder;
    FakePasteboard m_pasteboard;
    test::FakeUserDefaults m_defaults;
    test::FakeScreens m_screens;
    test::FakeFileManager m_files;
    AppConfig m_config{m_defaults, m_screens, m_files};
    QDateTime m_now{{2026, 11, 15}, {14, 5, 9}};
    ActionHandler m_actions{m_pasteboard, m_config, [this] { return m_now; }};
};

TEST_F(ActionHandlerTest, copyPutsTheImageAndItsPngOnAClearedPasteboard)
{
    m_pasteboard.setPngData("what was there before");
    m_pasteboard.calls.clear();
    const Image image = encodedImage(filledPixels(Qt::blue));

    m_actions.copyToClipboard(image);

    EXPECT_THAT(m_pasteboard.calls, ElementsAre(Call::clearContents, Call::writeImage, Call::setPngData));
    EXPECT_THAT(m_pasteboard.images, ElementsAre(image));
    EXPECT_EQ(m_pasteboard.png, image.pngData());
}

TEST_F(ActionHandlerTest, copyOfAFreshCaptureDoesNotWaitForItsEncoding)
{
    test::BusyEncodingPool busy;
    const Image image = Image::fromPixels(filledPixels(Qt::blue));

    m_actions.copyToClipboard(image);

    EXPECT_THAT(m_pasteboard.calls, ElementsAre(Call::clearContents, Call::writeImage));
    EXPECT_THAT(m_pasteboard.images, ElementsAre(image));
    busy.release();
    EXPECT_TRUE(m_pasteboard.images.front().pngData());
}

TEST_F(ActionHandlerTest, copyOfAnImageWithoutRepresentationLeavesTheImageObjectOnly)
{
    const Image image = Image::withoutRepresentation({200, 100});

    m_actions.copyToClipboard(image);

    EXPECT_THAT(m_pasteboard.calls, ElementsAre(Call::clearContents, Call::writeImage));
    EXPECT_THAT(m_pasteboard.images, ElementsAre(image));
    EXPECT_FALSE(m_pasteboard.png);
}

TEST_F(ActionHandlerTest, copyOfAnImageThatCannotBeEncodedLeavesTheImageObjectOnly)
{
    m_actions.copyToClipboard(imageThatCannotBeEncoded());

    EXPECT_EQ(m_pasteboard.images.size(), 1U);
    EXPECT_FALSE(m_pasteboard.png);
}

TEST_F(ActionHandlerTest, saveWritesThePngUnderTheNameOfTheSecond)
{
    const Image image = Image::fromPixels(filledPixels(Qt::green));

    const std::optional<QString> path = m_actions.saveToDisk(image);

    EXPECT_EQ(path, savedFile(QStringLiteral("LumenFold 2026-11-15 at 14.05.09.png")));
    EXPECT_THAT(savedFiles(), ElementsAre(QStringLiteral("LumenFold 2026-11-15 at 14.05.09.png")));
    QFile file(*path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), image.pngData());
    EXPECT_EQ(QImage(*path), filledPixels(Qt::green));
}

TEST_F(ActionHandlerTest, savedFileHasTheModeOfAnyOtherFileOfTheUser)
{
    const mode_t mask = umask(0027);
    const std::optional<QString> path = m_actions.saveToDisk(encodedImage(filledPixels(Qt::green)));
    umask(mask);

    ASSERT_TRUE(path);
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(*path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(ActionHandlerTest, twoSavesInOneSecondLeaveOneFileWithTheSecondImage)
{
    const std::optional<QString> first = m_actions.saveToDisk(encodedImage(filledPixels(Qt::red)));
    const std::optional<QString> second = m_actions.saveToDisk(encodedImage(filledPixels(Qt::blue)));

    EXPECT_TRUE(first);
    EXPECT_EQ(first, second);
    EXPECT_EQ(savedFiles().size(), 1);
    EXPECT_EQ(QImage(*second), filledPixels(Qt::blue));
}

TEST_F(ActionHandlerTest, theClockIsReadAtEachSave)
{
    EXPECT_TRUE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));
    m_now = m_now.addSecs(1);
    EXPECT_TRUE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));

    EXPECT_THAT(savedFiles(), ElementsAre(QStringLiteral("LumenFold 2026-11-15 at 14.05.09.png"),
                                          QStringLiteral("LumenFold 2026-11-15 at 14.05.10.png")));
}

TEST_F(ActionHandlerTest, theSaveFolderIsReadAtEachSave)
{
    QTemporaryDir other;
    EXPECT_TRUE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));
    saveInto(other.path());

    const std::optional<QString> path = m_actions.saveToDisk(encodedImage(filledPixels(Qt::red)));

    ASSERT_TRUE(path);
    EXPECT_EQ(QFileInfo(*path).path(), other.path());
}

TEST_F(ActionHandlerTest, saveIntoAMissingFolderIsLoggedAndMakesNoFolder)
{
    const QString missing = savedFile(QStringLiteral("nowhere"));
    saveInto(missing);

    EXPECT_FALSE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));

    expectOneSaveError();
    EXPECT_FALSE(QFileInfo::exists(missing));
}

TEST_F(ActionHandlerTest, saveIntoAFolderThatTakesNoFilesIsLogged)
{
    // Nobody may create files there, not even the superuser.
    saveInto(QStringLiteral("/proc"));

    EXPECT_FALSE(m_actions.saveToDisk(encodedImage(filledPixels(Qt::red))));

    expectOneSaveError();
}

TEST_F(ActionHandlerTest, saveOntoAFullDiskIsLoggedAndKeepsTheEarlierFile)
{
    expectFullDiskToKeepTheEarlierFile(encodedImage(noisePixels({100, 100})));
}

TEST_F(ActionHandlerTest, saveOfAStoredCardOntoAFullDiskIsTheSame)
{
    const QTemporaryDir cards;
    expectFullDiskToKeepTheEarlierFile(
        storedImage(encodedImage(noisePixels({100, 100})), cards.filePath(QStringLiteral("card.png"))));
}

TEST_F(ActionHandlerTest, saveOfACardThatStandsInAFileWritesItsBytes)
{
    const QTemporaryDir cards;
    const QString cardPath = cards.filePath(QStringLiteral("card.png"));
    const Image image = storedImage(encodedImage(filledPixels(Qt::green)), cardPath);

    const std::optional<QString> path = m_actions.saveToDisk(image);

    ASSERT_TRUE(path);
    EXPECT_EQ(QImage(*path), filledPixels(Qt::green));
    // A file of its own: what somebody does with it changes no card.
    ASSERT_TRUE(QFile::resize(*path, 0));
    EXPECT_EQ(QImage(cardPath), filledPixels(Qt::green));

    ASSERT_TRUE(QFile::resize(cardPath, 0));
    EXPECT_FALSE(m_actions.saveToDisk(image));
    EXPECT_EQ(savedFiles().size(), 1);
}

TEST_F(ActionHandlerTest, saveOfAnImageWithoutPngIsSilent)
{
    EXPECT_FALSE(m_actions.saveToDisk(Image::withoutRepresentation({200, 100})));
    EXPECT_FALSE(m_actions.saveToDisk(imageThatCannotBeEncoded()));
    EXPECT_FALSE(m_actions.saveToDisk(Image()));

    EXPECT_THAT(savedFiles(), ::testing::IsEmpty());
    EXPECT_THAT(test::logLines(), ::testing::IsEmpty());
}

} // namespace
} // namespace lumenfold
