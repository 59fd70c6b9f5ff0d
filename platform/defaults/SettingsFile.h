#pragma once

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <cstdint>

/// One small file that is read again only when it may have changed, and replaced as a whole.
namespace lumenfold {

class SettingsFile {
public:
    /// `path` is absolute; neither the file nor its directory need exist.
    explicit SettingsFile(QString path);

    [[nodiscard]] const QString &path() const { return m_path; }

    /// What stands in the file now; empty when there is none. One stat while it is unchanged. The error is the reason
    /// why it cannot be read.
    [[nodiscard]] tl::expected<QByteArray, QString> read();

    /// Puts other contents in place of the file, all or nothing, readable by the user alone if it is new; makes its
    /// directory. A link stays a link. The error is the reason why it could not.
    [[nodiscard]] tl::expected<void, QString> replace(const QByteArray &contents);

private:
    /// Which state of which file was read.
    struct Fingerprint {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t modifiedNanoseconds = 0;
        std::int64_t changedNanoseconds = 0;

        friend bool operator==(const Fingerprint &, const Fingerprint &) = default;
    };

    QString m_path;
    Fingerprint m_seen;
    /// The file had changed so shortly before it was read that a later change may bear the same time.
    bool m_mayChangeUnseen = true;
    QByteArray m_contents;
};

} // namespace lumenfold
