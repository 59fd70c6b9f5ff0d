#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <tl/expected.hpp>

#include <cstdint>
#include <memory>
#include <optional>

namespace lumenfold {

/// A PNG file that is read when its bytes are wanted, so that a picture nobody looks at takes no memory. A few are kept
/// open, and are still there when they have been deleted; the others are opened for each reading, and give nothing once
/// another file has taken their place. Not mapped: a mapped file that some other program shortens ends this one. One
/// thread at a time.
class PngFile {
public:
    /// The most files that are kept open at the same time; a process may by default have 1,024 descriptors, and other
    /// parts need some too.
    static constexpr int maximumOpenFiles = 256;

    /// Null when the file is not there, cannot be read, or is no ordinary file.
    [[nodiscard]] static std::unique_ptr<PngFile> open(const QString &path);
    ~PngFile();
    PngFile(const PngFile &) = delete;
    PngFile &operator=(const PngFile &) = delete;

    /// The first bytes, as many as there are up to this number.
    [[nodiscard]] QByteArray readFirst(qint64 bytes);
    [[nodiscard]] QByteArray readAll();

    /// Writes all of it there; see copyBytes().
    [[nodiscard]] tl::expected<void, QString> copyTo(QFile &target);

    [[nodiscard]] std::int64_t size() const { return m_identity.size; }

    /// False when something is missing at its end, as after a write that was cut off. A file of no more than
    /// `maximumProvenBytes` is read for that, and has right checksums when this is true; of a larger one only as much
    /// as says where its parts end.
    [[nodiscard]] bool isWhole();
    static constexpr qint64 maximumProvenBytes = 1024 * 1024;

    /// Tells these bytes from those of other pictures, and from other versions of this one: the file's length and time,
    /// and its last bytes, in which are the checksums of all pixels. Stays the same when the file gets another name, or
    /// the disk another place. Nothing when the file cannot be read.
    [[nodiscard]] std::optional<QByteArray> fingerprint();

    /// To be called before the file is deleted or replaced, by whoever does that: the bytes stay, in memory if there is
    /// no other way.
    void hold();

private:
    /// What tells the file from another one of the same name, and from itself when it has been written to.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t number = 0;
        std::int64_t size = 0;
        std::int64_t changedSeconds = 0;
        std::int64_t changedNanoseconds = 0;

        friend bool operator==(const Identity &, const Identity &) = default;
    };
    /// A file kept open counts while this lives.
    class OpenCount;

    explicit PngFile(const QString &path);

    [[nodiscard]] static std::optional<Identity> identityOf(const QFile &file);
    /// Opens the file if it is not, and closes it again at the end unless it is one of those that stay open.
    template <typename Read>
    [[nodiscard]] auto reading(Read read);
    [[nodiscard]] bool hasEndChunk();

    QFile m_file;
    Identity m_identity;
    std::unique_ptr<OpenCount> m_openCount;
    /// In place of the file, once it had to be.
    std::optional<QByteArray> m_contents;
};

} // namespace lumenfold
