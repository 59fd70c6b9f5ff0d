#include "tests/unit/persistence/PersistenceFixture.h"

#include "tests/unit/image/TestPictures.h"

#include <QDir>
#include <QFile>

namespace lumenfold::test {

PersistenceTest::PersistenceTest()
{
    reopen();
}

void PersistenceTest::reopen()
{
    store.reset();
    store = std::make_unique<CardPersistence>(cardFolder, thumbnailFolder);
}

bool PersistenceTest::exists(const QString &name) const
{
    return names().contains(name);
}

QStringList PersistenceTest::names() const
{
    return QDir(cardFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QByteArray PersistenceTest::contents(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void PersistenceTest::write(const QString &name, const QByteArray &bytes) const
{
    QDir().mkpath(cardFolder);
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

Image PersistenceTest::noise(unsigned seed, QSize size)
{
    return Image::fromPng(Image::fromPixels(noisePicture(size, seed)).pngData().value());
}

PersistedCard PersistenceTest::stacked(const QString &id)
{
    return {.id = id, .editorSourceId = id};
}

} // namespace lumenfold::test
