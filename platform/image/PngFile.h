#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <memory>

namespace lumenfold {

/// A PNG file that is kept open, so that a picture nobody looks at takes no memory and is still there when the file
/// has been deleted. Not mapped: a mapped file that some other program shortens ends this one. One thread at a time.
class PngFile {
public:
    /// The most files that are kept open at the same time; a process may by default have 1,024 descriptors, and other
    /// parts need some too.
    static constexpr int maximumOpenFiles = 256;

    /// Null when the file is not there, cannot be read, is no ordinary file, or as many are open as may be.
    [[nodiscard]] static std::unique_ptr<PngFile> open(const QString &path);
    ~PngFile();
    PngFile(const PngFile &) = delete;
    PngFile &operator=(const PngFile &) = delete;

    /// The first bytes, as many as there are up to this number.
    [[nodiscard]] QByteArray readFirst(qint64 bytes);
    [[nodiscard]] QByteArray readAll();

private:
    PngFile();

    QFile m_file;
};

} // namespace lumenfold
