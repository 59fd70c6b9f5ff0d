/// A power cut takes what the kernel has not brought to the disk. What is asked of it, and in which order, is seen here
/// in place of a power cut.
#include "tests/unit/image/TestPictures.h"
#include "tests/unit/persistence/PersistenceFixture.h"

#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdio>

namespace {

struct Calls {
    QMutex mutex;
    QStringList made;
    bool areRecorded = false;
};

Calls &calls()
{
    static Calls all;
    return all;
}

void record(const QString &call, const QString &path)
{
    const QMutexLocker lock(&calls().mutex);
    if (calls().areRecorded) {
        calls().made.append(call + u' ' + QFileInfo(path).fileName());
    }
}

QString pathOf(int descriptor)
{
    return QFileInfo(QStringLiteral("/proc/self/fd/%1").arg(descriptor)).symLinkTarget();
}

} // namespace

// The C library's, for everybody in this process.
extern "C" {

int fdatasync(int descriptor)
{
    record(QStringLiteral("sync"), pathOf(descriptor));
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

int fsync(int descriptor)
{
    record(QStringLiteral("sync"), pathOf(descriptor));
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

int rename(const char *from, const char *to) noexcept
{
    record(QStringLiteral("rename"), QString::fromLocal8Bit(to));
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int unlink(const char *path) noexcept
{
    record(QStringLiteral("remove"), QString::fromLocal8Bit(path));
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
}

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

class DurableWrites : public PersistenceTest {
protected:
    DurableWrites() { calls().areRecorded = true; }
    ~DurableWrites() override { calls().areRecorded = false; }

    /// Since this was last called, without the scratch file's own coming and going.
    [[nodiscard]] QStringList takeCalls()
    {
        finishWriting();
        const QMutexLocker lock(&calls().mutex);
        QStringList made = std::exchange(calls().made, {});
        made.removeAll(u"remove .writing.tmp"_s);
        return made;
    }
};

TEST_F(DurableWrites, aListReachesTheDiskAfterItsImages)
{
    store->saveImage(noise(1), u"A"_s);
    store->saveEditorSourceImage(noise(2), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    EXPECT_THAT(takeCalls(),
                // The folders are new, too.
                ElementsAre(u"sync "_s + QFileInfo(outside.path()).fileName(), u"sync data"_s, u"sync LumenFold"_s,
                            u"rename A.png"_s, u"rename A-source.png"_s,
                            // Both at once.
                            u"sync A.png"_s, u"sync A-source.png"_s, u"sync cards"_s,
                            // Now the list may name them.
                            u"sync .writing.tmp"_s, u"rename manifest.json"_s, u"sync cards"_s));
}

TEST_F(DurableWrites, anImageThatIsReplacedIsNeverWithoutBytes)
{
    store->saveImage(noise(1), u"A"_s);
    (void)takeCalls();
    store->saveImage(noise(2), u"A"_s);
    EXPECT_THAT(takeCalls(), ElementsAre(u"sync .writing.tmp"_s, u"rename A.png"_s, u"sync cards"_s));
}

TEST_F(DurableWrites, imagesGoWhenTheListOnTheDiskDoesNotNameThem)
{
    store->saveImage(noise(1), u"A"_s);
    store->writeManifest({stacked(u"A"_s)});
    (void)takeCalls();
    store->deleteImage(u"A"_s);
    store->writeManifest({});
    const QStringList made = takeCalls();
    EXPECT_EQ(made.first(3), QStringList({u"sync .writing.tmp"_s, u"rename manifest.json"_s, u"sync cards"_s}));
    EXPECT_THAT(made.mid(3), ::testing::UnorderedElementsAre(u"remove A.png"_s, u"remove A-source.png"_s));
}

TEST_F(DurableWrites, thumbnailsAreNotWaitedFor)
{
    const Image image = Image::fromPixels(gradientPicture({1600, 1200}));
    (void)image.thumbnail({160, 120});
    store->saveImage(image, u"A"_s);
    const QStringList made = takeCalls();
    ASSERT_FALSE(made.isEmpty());
    EXPECT_TRUE(made.last().startsWith(u"rename "_s)) << qPrintable(made.last());
}

} // namespace
} // namespace lumenfold::test
