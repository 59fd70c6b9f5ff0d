/// The clipboard as other programs see it: everything is read by a client with a connection of its own.
#include "platform/pasteboard/qt/QtPasteboard.h"

#include "tests/components/pasteboard/Noise.h"
#include "tests/support/desktop/Clipboard.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/fakes/BusyEncodingPool.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::UnorderedElementsAre;

constexpr QSize desktopSize{3840, 2160};

class QtPasteboardTest : public ::testing::Test {
protected:
    ~QtPasteboardTest() override
    {
        m_pasteboard.clearContents();
        EXPECT_TRUE(waitFor([this] { return m_reader.owner() == XCB_NONE; }));
    }

    /// Also while the image is still being encoded.
    void beginToCopy(const Image &image)
    {
        m_pasteboard.clearContents();
        m_pasteboard.writeImage(image);
        if (image.isEncoded()) {
            m_pasteboard.setPngData(image.pngData().value());
        }
    }

    void copy(const Image &image)
    {
        beginToCopy(image);
        bool done = false;
        QObject context;
        image.whenEncoded(&context, [&done](const auto &) { done = true; });
        ASSERT_TRUE(waitFor([&] { return done; }));
    }

    [[nodiscard]] std::optional<QByteArray> paste() { return m_reader.read("image/png"); }

    QtPasteboard m_pasteboard;
    ClipboardReader m_reader{guiTestServer().display()};
};

TEST_F(QtPasteboardTest, offersPngAndNoOtherPictureFormat)
{
    copy(Image::fromPixels(photographLike({64, 48})));

    // The last four are not formats but what every owner of a selection has to answer.
    EXPECT_THAT(m_reader.targets(),
                UnorderedElementsAre(QStringLiteral("image/png"), QStringLiteral("TARGETS"), QStringLiteral("MULTIPLE"),
                                     QStringLiteral("TIMESTAMP"), QStringLiteral("SAVE_TARGETS")));
}

TEST_F(QtPasteboardTest, aPasteOfAWholeDesktopIsTheCapturedPicture)
{
    const QImage picture = photographLike(desktopSize);
    const Image image = Image::fromPixels(picture);
    copy(image);

    const std::optional<QByteArray> pasted = paste();

    EXPECT_EQ(pasted, image.pngData());
    EXPECT_EQ(differingPixels(QImage::fromData(pasted.value(), "PNG"), picture), 0);
}

TEST_F(QtPasteboardTest, aPictureThatTravelsInPiecesArrivesWhole)
{
    const QImage picture = noise(desktopSize);
    copy(Image::fromPixels(picture));

    const std::optional<QByteArray> pasted = paste();

    EXPECT_GT(m_reader.pieces(), 1);
    EXPECT_EQ(differingPixels(QImage::fromData(pasted.value(), "PNG"), picture), 0);
}

TEST_F(QtPasteboardTest, aProgramThatTakesThePiecesSlowlyGetsThemAll)
{
    const Image image = Image::fromPixels(noise(desktopSize));
    copy(image);
    m_reader.setPauseBetweenPieces(1s);

    EXPECT_EQ(paste(), image.pngData());
    EXPECT_GT(m_reader.pieces(), 1);
}

TEST_F(QtPasteboardTest, aProgramThatAsksTwiceGetsTheSameTwice)
{
    const Image image = Image::fromPixels(noise(desktopSize));
    copy(image);

    EXPECT_EQ(paste(), image.pngData());
    EXPECT_EQ(paste(), image.pngData());
}

TEST_F(QtPasteboardTest, twoProgramsAtOnceBothGetThePicture)
{
    const Image image = Image::fromPixels(noise(desktopSize));
    copy(image);
    m_reader.setPauseBetweenPieces(300ms);
    ClipboardReader other(guiTestServer().display());
    std::optional<QByteArray> pastedByOther;
    // While the first one pauses between its pieces, the second one asks.
    QMetaObject::invokeMethod(
        &m_pasteboard, [&] { pastedByOther = other.read("image/png"); }, Qt::QueuedConnection);

    EXPECT_EQ(paste(), image.pngData());
    EXPECT_EQ(pastedByOther, image.pngData());
}

TEST_F(QtPasteboardTest, aProgramThatAsksForEverythingIsAnsweredAtOnce)
{
    const Image image = Image::fromPixels(photographLike(desktopSize));
    ASSERT_TRUE(image.pngData());
    copy(image);

    const QStringList targets = m_reader.targets();
    const auto start = std::chrono::steady_clock::now();
    for (const QString &target : targets) {
        if (target != QStringLiteral("MULTIPLE") && target != QStringLiteral("SAVE_TARGETS")) {
            EXPECT_TRUE(m_reader.read(target.toLatin1().constData())) << qPrintable(target);
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

TEST_F(QtPasteboardTest, otherFormatsHaveNoContents)
{
    copy(Image::fromPixels(photographLike({64, 48})));

    EXPECT_TRUE(m_reader.read("image/bmp").value_or(QByteArray()).isEmpty());
    EXPECT_TRUE(m_reader.read("application/x-qt-image").value_or(QByteArray()).isEmpty());
    EXPECT_TRUE(m_reader.read("UTF8_STRING").value_or(QByteArray()).isEmpty());
}

TEST_F(QtPasteboardTest, oneSetOfContentsIsOneChangeOfTheClipboard)
{
    (void)m_reader.ownerChanges();
    const Image image = Image::fromPixels(photographLike({64, 48}));
    ASSERT_TRUE(image.pngData());

    copy(image);

    EXPECT_EQ(paste(), image.pngData());
    EXPECT_EQ(m_reader.ownerChanges(), 1);
    copy(image);
    EXPECT_EQ(paste(), image.pngData());
    EXPECT_EQ(m_reader.ownerChanges(), 2);
}

TEST_F(QtPasteboardTest, bytesAloneAreContentsToo)
{
    m_pasteboard.clearContents();
    m_pasteboard.setPngData("the bytes");

    EXPECT_EQ(paste(), QByteArray("the bytes"));
}

TEST_F(QtPasteboardTest, explicitBytesGoBeforeTheImagesOwn)
{
    m_pasteboard.clearContents();
    m_pasteboard.writeImage(Image::fromPixels(photographLike({64, 48})));
    m_pasteboard.setPngData("the bytes");

    EXPECT_EQ(paste(), QByteArray("the bytes"));
}

TEST_F(QtPasteboardTest, aNewSetReplacesTheOldOne)
{
    const Image second = Image::fromPixels(photographLike({32, 32}, 2));
    copy(Image::fromPixels(photographLike({64, 48})));
    copy(second);

    EXPECT_EQ(paste(), second.pngData());
}

TEST_F(QtPasteboardTest, clearedContentsAreGone)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    ASSERT_TRUE(paste());

    m_pasteboard.clearContents();

    EXPECT_TRUE(waitFor([this] { return m_reader.owner() == XCB_NONE; }));
    EXPECT_FALSE(paste());
}

TEST_F(QtPasteboardTest, nobodyWaitsForAPictureThatIsBeingEncoded)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    const std::optional<QByteArray> before = paste();
    ASSERT_TRUE(before);
    const int changes = m_reader.ownerChanges();

    BusyEncodingPool busy;
    const Image image = Image::fromPixels(photographLike({640, 480}));
    beginToCopy(image);

    EXPECT_FALSE(image.isEncoded());
    EXPECT_EQ(m_reader.read("image/png"), before);
    EXPECT_EQ(m_reader.ownerChanges(), changes);
    busy.release();
    EXPECT_TRUE(waitFor([&] { return m_reader.read("image/png") == image.pngData(); }));
    EXPECT_EQ(m_reader.ownerChanges(), changes + 1);
}

TEST_F(QtPasteboardTest, aNewSetReplacesAPictureThatIsBeingEncoded)
{
    const Image second = Image::fromPixels(photographLike({32, 32}, 2));
    ASSERT_TRUE(second.pngData());
    BusyEncodingPool busy;
    beginToCopy(Image::fromPixels(photographLike({640, 480})));
    beginToCopy(second);
    busy.release();

    EXPECT_TRUE(staysTrue([&] { return m_reader.read("image/png") == second.pngData(); }, 100ms));
}

TEST_F(QtPasteboardTest, aPictureThatIsBeingEncodedWhenTheProgramEndsIsOffered)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(photographLike({640, 480}));
    {
        QtPasteboard pasteboard;
        pasteboard.clearContents();
        pasteboard.writeImage(image);
        ASSERT_FALSE(image.isEncoded());
        busy.release();
    }

    EXPECT_EQ(paste(), image.pngData());
}

TEST_F(QtPasteboardTest, aPictureThatTurnsOutNotToBeEncodableLeavesTheClipboardEmpty)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    ASSERT_TRUE(paste());
    BusyEncodingPool busy;
    QImage tooLong(32769, 1, QImage::Format_RGB32);
    tooLong.fill(Qt::red);
    const Image image = Image::fromPixels(tooLong);
    beginToCopy(image);
    ASSERT_NE(m_reader.owner(), XCB_NONE);

    busy.release();

    EXPECT_TRUE(waitFor([this] { return m_reader.owner() == XCB_NONE; }));
}

TEST_F(QtPasteboardTest, aPictureWithoutRepresentationLeavesTheClipboardEmpty)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    ASSERT_TRUE(paste());

    m_pasteboard.clearContents();
    m_pasteboard.writeImage(Image::withoutRepresentation({200, 100}));

    EXPECT_TRUE(waitFor([this] { return m_reader.owner() == XCB_NONE; }));
}

/// Another program's copy: it owns the clipboard and never answers.
class OtherOwner {
public:
    OtherOwner()
    {
        xcb_connection_t *xcb = m_connection.get();
        m_window = xcb_generate_id(xcb);
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(xcb, m_window, m_connection.atom("CLIPBOARD"), XCB_CURRENT_TIME);
        m_connection.sync();
    }
    [[nodiscard]] xcb_window_t window() const { return m_window; }

private:
    XConnection m_connection{guiTestServer().display()};
    xcb_window_t m_window = XCB_NONE;
};

TEST_F(QtPasteboardTest, takesTheClipboardFromAProgramThatCopiedLater)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    ASSERT_TRUE(paste());
    const OtherOwner other;
    ASSERT_EQ(m_reader.owner(), other.window());
    // Who claims a selection says when, and the toolkit knows the time of the other's claim by the server's notice.
    ASSERT_TRUE(waitFor([] { return !QGuiApplication::clipboard()->ownsClipboard(); }));

    const Image second = Image::fromPixels(photographLike({32, 32}, 2));
    copy(second);

    EXPECT_NE(m_reader.owner(), other.window());
    EXPECT_EQ(paste(), second.pngData());
}

TEST_F(QtPasteboardTest, givesTheBytesUpWhenAnotherProgramCopies)
{
    const QByteArray bytes(1000, 'x');
    m_pasteboard.clearContents();
    m_pasteboard.setPngData(bytes);
    ASSERT_FALSE(bytes.isDetached());

    const OtherOwner other;

    EXPECT_TRUE(waitFor([&] { return bytes.isDetached(); }));
}

TEST_F(QtPasteboardTest, doesNotClearWhatAnotherProgramCopied)
{
    copy(Image::fromPixels(photographLike({64, 48})));
    BusyEncodingPool busy;
    QImage tooLong(32769, 1, QImage::Format_RGB32);
    tooLong.fill(Qt::red);
    const Image image = Image::fromPixels(tooLong);
    beginToCopy(image);
    const OtherOwner other;
    EXPECT_TRUE(waitFor([] { return !QGuiApplication::clipboard()->ownsClipboard(); }));

    busy.release();

    EXPECT_TRUE(staysTrue([&] { return m_reader.owner() == other.window(); }, 200ms));
}

} // namespace
} // namespace lumenfold::test
