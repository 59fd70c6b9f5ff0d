/// What happens between the encoding threads and those who wait for them.
#include "platform/image/EncodingPool.h"
#include "platform/image/Image.h"
#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/unit/image/TestPictures.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>
#include <QThreadPool>

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace lumenfold {
namespace {

using test::BusyEncodingPool;

bool runEventsUntil(const std::function<bool()> &condition)
{
    QDeadlineTimer deadline(std::chrono::seconds(10));
    while (!condition() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return condition();
}

TEST(ImageThreads, thePoolHasAtLeastTwoThreadsAndThemNotForEver)
{
    EXPECT_GE(encodingPool().maxThreadCount(), 2);
    EXPECT_GT(encodingPool().expiryTimeout(), 0);
    EXPECT_LE(encodingPool().expiryTimeout(), 2000);
}

TEST(ImageThreads, thereAreNoThreadsWhenThereIsNothingToDo)
{
    const auto threads = [] { return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs).size(); };
    const auto busyThreads = [&] {
        const BusyEncodingPool busy;
        EXPECT_TRUE(runEventsUntil([] { return encodingPool().activeThreadCount() >= 2; }));
        return threads();
    }();
    EXPECT_TRUE(runEventsUntil([&] { return threads() <= busyThreads - 2; }));
}

TEST(ImageThreads, callsBackWhenTheEncodingEnds)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(test::plainPicture({40, 30}));
    QObject context;
    std::optional<QByteArray> told;
    QThread *toldOn = nullptr;
    image.whenEncoded(&context, [&](std::optional<QByteArray> png) {
        told = std::move(png);
        toldOn = QThread::currentThread();
    });
    QCoreApplication::processEvents();
    EXPECT_FALSE(told);

    busy.release();

    EXPECT_FALSE(told);
    EXPECT_TRUE(runEventsUntil([&] { return told.has_value(); }));
    EXPECT_EQ(told, image.pngData());
    EXPECT_EQ(toldOn, QThread::currentThread());
}

TEST(ImageThreads, callsBackLaterAlsoWhenTheBytesAreThere)
{
    const Image image = Image::fromPixels(test::plainPicture({40, 30}));
    ASSERT_TRUE(image.pngData());
    QObject context;
    int calls = 0;
    image.whenEncoded(&context, [&](const std::optional<QByteArray> &) { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(runEventsUntil([&] { return calls == 1; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

TEST(ImageThreads, callsEverybodyBack)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(test::plainPicture({40, 30}));
    QObject context;
    int calls = 0;
    for (int listener = 0; listener < 5; ++listener) {
        image.whenEncoded(&context, [&](const std::optional<QByteArray> &) { ++calls; });
    }
    busy.release();
    EXPECT_TRUE(runEventsUntil([&] { return calls == 5; }));
}

TEST(ImageThreads, tellsOfAFailureToo)
{
    QObject context;
    int failures = 0;
    const auto count = [&](const std::optional<QByteArray> &png) { failures += png ? 0 : 1; };
    const Image unencodable = Image::fromPixels(test::plainPicture({32769, 1}));
    unencodable.whenEncoded(&context, count);
    Image::withoutRepresentation({1, 1}).whenEncoded(&context, count);
    Image().whenEncoded(&context, count);
    EXPECT_TRUE(runEventsUntil([&] { return failures == 3; }));
}

TEST(ImageThreads, doesNotCallBackForAContextThatIsGone)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(test::plainPicture({40, 30}));
    bool calledEarly = false;
    bool calledLate = false;
    auto goneBefore = std::make_unique<QObject>();
    auto goneAfter = std::make_unique<QObject>();
    image.whenEncoded(goneBefore.get(), [&](const std::optional<QByteArray> &) { calledEarly = true; });
    image.whenEncoded(goneAfter.get(), [&](const std::optional<QByteArray> &) { calledLate = true; });
    goneBefore.reset();
    busy.release();
    // The news is on its way, and has not been delivered.
    goneAfter.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(calledEarly);
    EXPECT_FALSE(calledLate);
}

TEST(ImageThreads, callsBackAlsoWhenEveryHandleIsGone)
{
    BusyEncodingPool busy;
    QObject context;
    std::optional<QByteArray> told;
    Image::fromPixels(test::plainPicture({40, 30})).whenEncoded(&context, [&](std::optional<QByteArray> png) {
        told = std::move(png);
    });
    busy.release();
    EXPECT_TRUE(runEventsUntil([&] { return told.has_value(); }));
}

TEST(ImageThreads, theCallbackDiesOnTheThreadThatAsked)
{
    BusyEncodingPool busy;
    QObject context;
    std::atomic<std::thread::id> diedOn;
    std::shared_ptr<int> token(new int(0), [&](int *number) {
        delete number;
        diedOn = std::this_thread::get_id();
    });
    Image::fromPixels(test::plainPicture({40, 30}))
        .whenEncoded(&context, [token = std::move(token)](const std::optional<QByteArray> &) {});
    busy.release();
    EXPECT_TRUE(runEventsUntil([&] { return diedOn.load() != std::thread::id(); }));
    EXPECT_EQ(diedOn.load(), std::this_thread::get_id());
}

TEST(ImageThreads, aPictureMayGoWhileItIsBeingEncoded)
{
    static std::atomic<int> released;
    released = 0;
    for (int round = 0; round < 50; ++round) {
        auto *memory = new QImage(test::plainPicture({300, 300}));
        Image image = Image::fromPixels(QImage(
            memory->bits(), 300, 300, QImage::Format_RGB32,
            [](void *owner) {
                delete static_cast<QImage *>(owner);
                ++released;
            },
            memory));
        image = Image();
    }
    encodingPool().waitForDone();
    EXPECT_EQ(released, 50);
}

TEST(ImageThreads, aHandleGoesAtOnceWhileItsPictureIsBeingEncoded)
{
    BusyEncodingPool busy;
    auto image = std::make_unique<Image>(Image::fromPixels(test::plainPicture({40, 30})));
    // Would never return if it waited: nothing is encoded before `busy` goes.
    image.reset();
}

TEST(ImageThreads, manyThreadsMayAskTheSamePicture)
{
    const QImage pixels = test::gradientPicture({600, 400});
    for (int round = 0; round < 20; ++round) {
        const Image image = Image::fromPixels(pixels);
        std::vector<std::thread> threads;
        std::atomic<int> wrong = 0;
        for (int thread = 0; thread < 6; ++thread) {
            threads.emplace_back([&, thread, own = image] {
                if (thread == 0) {
                    own.releasePixelsWhenEncoded();
                }
                wrong += own.pixels() == pixels ? 0 : 1;
                wrong += own.pngData() ? 0 : 1;
                wrong += own.thumbnail({60, 60 + thread}).isNull() ? 1 : 0;
                (void)own.holdsPixels();
                (void)own.isEncoded();
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(QImage::fromData(image.pngData().value()), pixels);
    }
}

TEST(ImageThreadsDeathTest, dont_crash_whenTheProgramEndsWhileAPictureIsEncoded)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto endWhileEncoding = [] {
        const Image image = Image::fromPixels(test::gradientPicture({3000, 2000}));
        std::exit(0);
    };
    EXPECT_EXIT(endWhileEncoding(), ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace lumenfold
