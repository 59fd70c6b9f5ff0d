#pragma once

#include <QByteArrayView>
#include <QImage>
#include <QSet>
#include <QString>

#include <utility>

namespace lumenfold {

class Image;

/// A folder with small copies of what cards show, so that two hundred pictures of whole desktops need not be read when
/// the program starts. One PNG file for each card, named after its image's name and after what tells the image's bytes
/// from all others: a copy of anything else is not found. Whoever empties the folder costs the user a moment, and
/// nothing else. Any thread, but one at a time for what changes it. Every failure is swallowed.
class ThumbnailFolder {
public:
    /// An absolute path, or nothing: then nothing is kept. The folder need not exist.
    explicit ThumbnailFolder(QString path) : m_path(std::move(path)) {}

    /// What was kept for the image in the file of that name and with that fingerprint; null when there is nothing, or
    /// it cannot be read.
    [[nodiscard]] QImage find(const QString &imageName, QByteArrayView fingerprint) const;

    /// Keeps the image's latest thumbnail, if the image is so much larger that this is worth a file, in place of what
    /// was kept under the name before.
    void keep(const QString &imageName, QByteArrayView fingerprint, const Image &image) const;

    void removeAllOf(const QSet<QString> &imageNames) const;
    void removeAllExcept(const QSet<QString> &imageNames) const;

private:
    [[nodiscard]] QString pathOf(const QString &name) const;
    template <typename Condition>
    void removeWhere(Condition isUnneeded) const;

    const QString m_path;
};

} // namespace lumenfold
