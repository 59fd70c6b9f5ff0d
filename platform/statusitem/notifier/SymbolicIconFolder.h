#pragma once

#include "platform/statusitem/StatusIconPainter.h"

#include <QColor>
#include <QString>

namespace lumenfold {

/// Files with the icon's drawing, for desktops that take pictures by name and colour them as their panel wants it. The
/// folder is the user's cache: what is missing there is written again.
class SymbolicIconFolder {
public:
    /// An absolute path; need not exist. With an empty one there are never names.
    explicit SymbolicIconFolder(QString path);

    [[nodiscard]] QString path() const { return m_path; }

    /// The name under which the folder has the icon; empty when it cannot be written.
    [[nodiscard]] QString nameOf(const StatusIcon &icon, const QColor &templateColor) const;

private:
    const QString m_path;
};

} // namespace lumenfold
