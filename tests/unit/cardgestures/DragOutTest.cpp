#include "cards/DragOut.h"

#include "cards/DragFolder.h"
#include "platform/image/EncodingPool.h"
#include "tests/support/fakes/FakeDragSessions.h"
#include "tests/support/unit/LogWatch.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;
using ::testing::SizeIs;

Image picture(const QColor &colour, QSize size = {40, 30})
{
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(colour);
    return Image::fromPixels(std::move(pixels));
}

class DragOutTest : public ::testing::Test {
protected:
    DragOutTest()
    {
        m_dragOut->now = [this] { return m_now; };
        setImage(m_image);
        m_shown.fill(Qt::red);
    }

    /// Encoded, so that nothing but the file is waited for.
    void setImage(const Image &image)
    {
        (void)image.pngData();
        m_dragOut->setImage(image);
    }

    void pointerDragged() { m_dragOut->pointerDragged({.view = m_view.get(), .picture = m_shown, .hotSpot = {8, 6}}); }

    /// Until everything that was begun is done.
    static void settle()
    {
        for (int turn = 0; turn < 20; ++turn) {
            backgroundPool().waitForDone();
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    /// One drag from the press to the release.
    void drag()
    {
        pointerDragged();
        settle();
    }

    QTemporaryDir m_temporary;
    FakeDragSessions m_sessions;
    std::unique_ptr<DragFolder> m_folder = std::make_unique<DragFolder>(m_temporary.path());
    std::unique_ptr<DragOut> m_dragOut = std::make_unique<DragOut>(m_sessions, *m_folder);
    std::unique_ptr<QWidget> m_view = std::make_unique<QWidget>();
    qint64 m_now = 1'700'000'000;
    Image m_image = picture(Qt::darkCyan);
    QPixmap m_shown{160, 120};
};

TEST_F(DragOutTest, theFirstDragMakesTheFile)
{
    drag();

    ASSERT_THAT(m_sessions.drags, SizeIs(1));
    const FileDrag &dragged = m_sessions.drags.front();
    EXPECT_EQ(QFileInfo(dragged.path).fileName(), u"LumenFold Screenshot 1700000000.png"_s);
    EXPECT_TRUE(dragged.path.startsWith(m_temporary.path() + u"/LumenFold-"_s));
    QFile file(dragged.path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), m_image.pngData());
    EXPECT_EQ(dragged.png, m_image.pngData());
    EXPECT_EQ(dragged.picture.size(), QSize(160, 120));
    EXPECT_EQ(dragged.hotSpot, QPoint(8, 6));
    EXPECT_EQ(dragged.source, m_view.get());
}

TEST_F(DragOutTest, aLaterDragUsesTheSameFile)
{
    drag();
    m_now += 5;
    drag();
    ASSERT_THAT(m_sessions.drags, SizeIs(2));
    EXPECT_EQ(m_sessions.drags.at(1).path, m_sessions.drags.at(0).path);
}

TEST_F(DragOutTest, anotherPictureGetsAnotherFileAndTheFirstStays)
{
    drag();
    m_now += 1;
    setImage(picture(Qt::yellow));
    EXPECT_EQ(m_dragOut->filePath(), std::nullopt);
    drag();
    ASSERT_THAT(m_sessions.drags, SizeIs(2));
    EXPECT_NE(m_sessions.drags.at(1).path, m_sessions.drags.at(0).path);
    EXPECT_TRUE(QFile::exists(m_sessions.drags.at(0).path));

    m_dragOut->setImage(m_image);
    m_dragOut->setImage(m_image);
    EXPECT_EQ(m_dragOut->filePath(), std::nullopt);
}

TEST_F(DragOutTest, twoPicturesOfOneSecondShareOneName)
{
    DragOut other(m_sessions, *m_folder);
    other.now = m_dragOut->now;
    const Image yellow = picture(Qt::yellow);
    other.setImage(yellow);
    drag();
    (void)yellow.pngData();
    other.pointerDragged({.view = m_view.get(), .picture = m_shown});
    settle();

    ASSERT_THAT(m_sessions.drags, SizeIs(2));
    EXPECT_EQ(m_sessions.drags.at(0).path, m_sessions.drags.at(1).path);
    QFile file(m_sessions.drags.at(1).path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), yellow.pngData());
}

TEST_F(DragOutTest, aFileThatSomebodyDeletedIsMadeAgain)
{
    drag();
    QDir(QFileInfo(m_sessions.drags.front().path).path()).removeRecursively();
    drag();
    ASSERT_THAT(m_sessions.drags, SizeIs(2));
    EXPECT_TRUE(QFile::exists(m_sessions.drags.at(1).path));
}

TEST_F(DragOutTest, nothingIsDraggedOnceTheButtonWasLetGo)
{
    m_sessions.isHeld = false;
    drag();
    EXPECT_THAT(m_sessions.drags, IsEmpty());
    // The file is there for the next time.
    EXPECT_TRUE(m_dragOut->filePath());
    m_sessions.isHeld = true;
    drag();
    EXPECT_THAT(m_sessions.drags, SizeIs(1));
}

TEST_F(DragOutTest, onlyOneDragAtATime)
{
    for (int movement = 0; movement < 10; ++movement) {
        pointerDragged();
    }
    m_sessions.duringDrag = [this] {
        pointerDragged();
        QCoreApplication::processEvents();
    };
    settle();
    EXPECT_THAT(m_sessions.drags, SizeIs(1));
}

TEST_F(DragOutTest, aViewMayGoAtAnyTime)
{
    pointerDragged();
    m_view.reset();
    settle();
    EXPECT_THAT(m_sessions.drags, IsEmpty());

    m_view = std::make_unique<QWidget>();
    m_sessions.duringDrag = [this] {
        m_view.reset();
        m_dragOut.reset();
    };
    drag();
    EXPECT_THAT(m_sessions.drags, SizeIs(1));
}

TEST_F(DragOutTest, aDragThatIsGoneBeforeItsFileIsThereIsNotMissed)
{
    pointerDragged();
    QCoreApplication::sendPostedEvents();
    m_dragOut.reset();
    settle();
    EXPECT_THAT(m_sessions.drags, IsEmpty());
}

TEST_F(DragOutTest, whatIsNoPictureIsNotDragged)
{
    m_dragOut->setImage(Image::withoutRepresentation({10, 10}));
    drag();
    m_dragOut->setImage(Image());
    drag();
    EXPECT_THAT(m_sessions.drags, IsEmpty());
}

TEST_F(DragOutTest, aFolderThatCannotBeMadeIsLogged)
{
    const QString missing = m_temporary.path() + u"/missing"_s;
    DragFolder folder(missing);
    DragOut dragOut(m_sessions, folder);
    dragOut.setImage(m_image);
    expectLogLine(u"LumenFold: failed to write drag temp file: No such file or directory"_s);
    dragOut.pointerDragged({.view = m_view.get(), .picture = m_shown});
    settle();
    EXPECT_THAT(m_sessions.drags, IsEmpty());

    // It is tried again.
    ASSERT_TRUE(QDir().mkpath(missing));
    dragOut.pointerDragged({.view = m_view.get(), .picture = m_shown});
    settle();
    EXPECT_THAT(m_sessions.drags, SizeIs(1));
}

TEST_F(DragOutTest, aFileThatCannotBeWrittenIsLogged)
{
    drag();
    const QString path = m_sessions.drags.front().path;
    QFile::remove(path);
    ASSERT_TRUE(QDir().mkpath(path + u"/in the way"_s));
    setImage(picture(Qt::yellow));
    expectLogLine(u"LumenFold: failed to write drag temp file: Is a directory"_s);
    drag();
    EXPECT_THAT(m_sessions.drags, SizeIs(1));
    EXPECT_EQ(m_dragOut->filePath(), std::nullopt);
}

TEST_F(DragOutTest, whatIsDraggedAlongIsNoLargerThanACard)
{
    m_shown = QPixmap(1280, 960);
    m_shown.setDevicePixelRatio(2);
    drag();
    EXPECT_EQ(m_sessions.drags.front().picture.deviceIndependentSize(), QSizeF(320, 240));
    EXPECT_EQ(m_sessions.drags.front().hotSpot, QPoint(4, 3));
}

TEST_F(DragOutTest, theFilesGoWithTheFolder)
{
    drag();
    m_dragOut.reset();
    m_folder.reset();
    EXPECT_THAT(QDir(m_temporary.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), IsEmpty());
}

TEST_F(DragOutTest, nobodyElseMayReadTheFolder)
{
    drag();
    const QFileInfo folder(QFileInfo(m_sessions.drags.front().path).path());
    EXPECT_FALSE(folder.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther));
}

} // namespace
} // namespace lumenfold::test
