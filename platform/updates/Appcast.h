#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

/// The list of versions that a feed offers: RSS 2.0, each item a version. README.md shows one.
namespace lumenfold {

struct AppcastItem {
    QString version;
    QString title{};
    /// Of the system's C library, below which the program does not start; empty where nobody says.
    QString minimumSystemVersion{};
    /// Markdown.
    QString notes{};
    /// The page with the download, or the file itself where there is no page; always HTTPS.
    QUrl page{};
    /// The file, and its length in bytes where the feed says it.
    QUrl file{};
    std::optional<qint64> length{};
};

/// No feed is larger. Reading one of this size takes a few milliseconds.
inline constexpr qsizetype maximumAppcastBytes = qsizetype{512} * 1024;

/// In the order of the feed, without the items that lack a version or a file, or lead to anything but HTTPS. Nothing
/// for what is no RSS or breaks off, for what is larger than a feed, and for any document that declares a type or
/// entities of its own.
[[nodiscard]] std::optional<std::vector<AppcastItem>> readAppcast(const QByteArray &xml);

} // namespace lumenfold
