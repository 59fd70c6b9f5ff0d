#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QWidget;

namespace lumenfold {

/// Lets the user say where a file is to be written, and which files are to be read. Main thread.
class FilePanels {
public:
    FilePanels() = default;
    FilePanels(const FilePanels &) = delete;
    FilePanels &operator=(const FilePanels &) = delete;
    virtual ~FilePanels() = default;

    using Chosen = std::function<void(std::optional<QString> path)>;

    /// Shows a panel in front of `window` and returns. `chosen` is called once, with an absolute path or, when the user
    /// does not want to, with nothing; not at all when the window goes first. The user has been asked whether a file of
    /// that name may be replaced.
    virtual void save(QWidget &window, const QString &suggestedPath, Chosen chosen) = 0;

    enum class Count { one, several };
    /// Shows a panel in front of `window` and waits, in an event loop of its own, for the absolute paths of existing
    /// files; none when the user does not want to. For callers that have to answer at once.
    [[nodiscard]] virtual QStringList open(QWidget &window, Count count) = 0;
    /// Closes the panel that `open` waits for, if there is one, as if the user did not want to.
    virtual void cancelOpen() = 0;
};

} // namespace lumenfold
