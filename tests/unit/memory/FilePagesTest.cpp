#include "platform/memory/FilePages.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <numeric>

namespace lumenfold::test {
namespace {

/// A file that is mapped as a library is: shared with the system's own copy until it is written to.
class MappedFile {
public:
    explicit MappedFile(const QString &path) : m_file(path)
    {
        const QByteArray contents(bytes, 'x');
        if (m_file.open(QIODevice::ReadWrite) && m_file.write(contents) == bytes && m_file.flush() &&
            ::fsync(m_file.handle()) == 0) {
            void *const mapped = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE, m_file.handle(), 0);
            m_memory = mapped == MAP_FAILED ? nullptr : static_cast<char *>(mapped);
        }
    }
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;
    ~MappedFile() { ::munmap(m_memory, bytes); }

    [[nodiscard]] QByteArray path() const { return QFile::encodeName(m_file.fileName()); }
    [[nodiscard]] char *memory() { return m_memory; }
    /// As a library's code and constants are.
    void makeReadOnly() { ASSERT_EQ(::mprotect(m_memory, bytes, PROT_READ), 0); }
    [[nodiscard]] long read() const { return std::accumulate(m_memory, m_memory + bytes, 0L); }
    /// What of it is in the program's memory, in KiB.
    [[nodiscard]] long resident() const
    {
        QFile maps(QStringLiteral("/proc/self/smaps"));
        if (!maps.open(QIODevice::ReadOnly)) {
            return -1;
        }
        const QByteArray all = maps.readAll();
        long figure = -1;
        const qsizetype mapping = all.indexOf(m_file.fileName().toLocal8Bit());
        const qsizetype line = all.indexOf("Rss:", mapping);
        return mapping >= 0 && std::sscanf(all.constData() + line, "Rss: %ld", &figure) == 1 ? figure : -1;
    }

    static constexpr qsizetype bytes = qsizetype{256} * 1024;
    static constexpr long kibibytes = bytes / 1024;

private:
    QFile m_file;
    char *m_memory = nullptr;
};

class FilePagesTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    MappedFile given{folder.filePath(QStringLiteral("given.so"))};
    MappedFile kept{folder.filePath(QStringLiteral("kept.so"))};
};

TEST_F(FilePagesTest, TheMemoryOfTheFilesThatAreNamedGoesBack)
{
    ASSERT_NE(given.memory(), nullptr);
    ASSERT_NE(kept.memory(), nullptr);
    given.makeReadOnly();
    const long contents = given.read();
    EXPECT_EQ(kept.read(), contents);
    EXPECT_EQ(given.resident(), MappedFile::kibibytes);
    giveBackFilePages({given.path()});
    EXPECT_LT(given.resident(), MappedFile::kibibytes / 4);
    EXPECT_EQ(kept.resident(), MappedFile::kibibytes);
    // And is read anew when it is needed.
    EXPECT_EQ(given.read(), contents);
}

TEST_F(FilePagesTest, WhatTheProgramHasChangedStays)
{
    ASSERT_NE(given.memory(), nullptr);
    given.memory()[5] = 'y';
    giveBackFilePages({given.path()});
    EXPECT_EQ(given.memory()[5], 'y');
    // As what a library's loader has filled in is.
    given.makeReadOnly();
    giveBackFilePages({given.path()});
    EXPECT_EQ(given.memory()[5], 'y');
}

TEST_F(FilePagesTest, WhatMayBeChangedAtAnyMomentStays)
{
    ASSERT_NE(given.memory(), nullptr);
    (void)given.read();
    giveBackFilePages({given.path()});
    EXPECT_EQ(given.resident(), MappedFile::kibibytes);
}

TEST_F(FilePagesTest, ReadingAheadDoesNotMakeTheProgramLarger)
{
    ASSERT_NE(given.memory(), nullptr);
    readFilePagesAhead({given.path()});
    EXPECT_EQ(given.resident(), 0);
    EXPECT_EQ(given.read(), MappedFile::bytes * 'x');
}

TEST_F(FilePagesTest, TheMappedFilesAreKnown)
{
    ASSERT_NE(given.memory(), nullptr);
    const QSet<QByteArray> mapped = mappedFiles();
    EXPECT_TRUE(mapped.contains(given.path()));
    EXPECT_TRUE(mapped.contains(QFile::encodeName(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath())));
    EXPECT_FALSE(mapped.contains(QByteArray()));
    EXPECT_FALSE(mapped.contains("/no/such/file"));
}

TEST_F(FilePagesTest, AFileThatIsNotMappedChangesNothing)
{
    ASSERT_NE(kept.memory(), nullptr);
    kept.makeReadOnly();
    (void)kept.read();
    giveBackFilePages({"/no/such/file"});
    readFilePagesAhead({"/no/such/file"});
    EXPECT_EQ(kept.resident(), MappedFile::kibibytes);
}

} // namespace
} // namespace lumenfold::test
