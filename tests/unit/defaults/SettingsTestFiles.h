#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace lumenfold::test {

inline const QString key = QStringLiteral("LumenFold.value");

/// A folder of its own for each test, and the settings file in it.
class SettingsTestFiles : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("LumenFold.conf")); }

    void putFile(const QByteArray &contents) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(contents), contents.size());
    }

    [[nodiscard]] QByteArray fileContents() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    [[nodiscard]] QStringList filesInFolder() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
};

/// File permissions mean nothing to root, so a test of them that runs as root becomes nobody for a while.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() : m_user(geteuid())
    {
        if (m_user == 0) {
            EXPECT_EQ(seteuid(nobody), 0);
        }
    }
    AsOrdinaryUser(const AsOrdinaryUser &) = delete;
    AsOrdinaryUser &operator=(const AsOrdinaryUser &) = delete;
    ~AsOrdinaryUser()
    {
        if (m_user == 0) {
            EXPECT_EQ(seteuid(m_user), 0);
        }
    }

private:
    static constexpr uid_t nobody = 65534;
    uid_t m_user;
};

} // namespace lumenfold::test
