#pragma once

#include <QCoroTask>
#include <QString>

#include <optional>

class QWidget;

namespace lumenfold {

/// Lets the user choose a folder.
class OpenPanel {
public:
    struct Request {
        QString title;
        /// What the button says that confirms.
        QString prompt;
        /// Where the panel opens; an absolute path.
        QString directory;
        /// The window that it stands in front of; none of its own when null. Lives at least as long as it is shown.
        QWidget *window = nullptr;
    };

    OpenPanel() = default;
    OpenPanel(const OpenPanel &) = delete;
    OpenPanel &operator=(const OpenPanel &) = delete;
    virtual ~OpenPanel() = default;

    /// Shows the panel and ends with the absolute path of the one folder that was chosen, or with nothing when the user
    /// has chosen none. A panel that is still up when the program ends leaves its task unfinished.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> chooseDirectory(Request request) = 0;
};

} // namespace lumenfold
