#include "cards/DragFolder.h"

#include <QDir>
#include <QTemporaryDir>

#include <utility>

namespace lumenfold {

DragFolder::DragFolder() : DragFolder(QDir::tempPath()) {}

DragFolder::DragFolder(QString parent) : m_parent(std::move(parent)) {}

DragFolder::~DragFolder() = default;

DragFolder::NewFile DragFolder::fileFor(qint64 secondsSinceEpoch)
{
    // Somebody may have tidied the temporary files up.
    if (!m_folder || !QDir(m_folder->path()).exists()) {
        m_folder = std::make_unique<QTemporaryDir>(m_parent + QStringLiteral("/LumenFold-XXXXXX"));
    }
    if (!m_folder->isValid()) {
        NewFile failure{.path = std::nullopt, .error = m_folder->errorString()};
        m_folder.reset();
        return failure;
    }
    return {.path = m_folder->filePath(QStringLiteral("LumenFold Screenshot %1.png").arg(secondsSinceEpoch)),
            .error = {}};
}

} // namespace lumenfold
