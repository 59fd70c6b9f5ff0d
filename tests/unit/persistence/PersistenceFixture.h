#pragma once

#include "cards/CardPersistence.h"
#include "platform/image/Image.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// A card store in a folder of its own, which is not there yet.
class PersistenceTest : public ::testing::Test {
protected:
    PersistenceTest();

    /// As after a restart of the program.
    void reopen();
    void finishWriting() { ASSERT_TRUE(store->flush()); }

    [[nodiscard]] QString path(const QString &name) const { return cardFolder + u'/' + name; }
    [[nodiscard]] bool exists(const QString &name) const;
    /// The names of everything in the card folder, sorted.
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] QByteArray contents(const QString &name) const;
    void write(const QString &name, const QByteArray &bytes) const;

    /// A picture of its own, with its bytes made.
    [[nodiscard]] static Image noise(unsigned seed, QSize size = {24, 18});
    [[nodiscard]] static PersistedCard stacked(const QString &id);

    QTemporaryDir outside;
    const QString cardFolder = outside.filePath(QStringLiteral("data/LumenFold/cards"));
    /// Not there yet either.
    const QString thumbnailFolder = outside.filePath(QStringLiteral("cache/LumenFold/card-thumbnails"));
    std::unique_ptr<CardPersistence> store;
};

} // namespace lumenfold::test
