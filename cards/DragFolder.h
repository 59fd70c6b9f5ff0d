#pragma once

#include <QString>

#include <memory>
#include <optional>

class QTemporaryDir;

namespace lumenfold {

/// Where the files are that are dragged out: a folder of this run's own in the system's temporary one. It is made when
/// it is first needed and goes with everything in it when this object goes.
class DragFolder {
public:
    DragFolder();
    /// In place of the system's temporary folder.
    explicit DragFolder(QString parent);
    DragFolder(const DragFolder &) = delete;
    DragFolder &operator=(const DragFolder &) = delete;
    ~DragFolder();

    struct NewFile {
        /// Absolute; nothing when the folder cannot be made.
        std::optional<QString> path;
        /// Why not.
        QString error;
    };
    /// The name for a file that is made at that time (seconds since 1970). Files of one second share one name.
    [[nodiscard]] NewFile fileFor(qint64 secondsSinceEpoch);

private:
    const QString m_parent;
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace lumenfold
