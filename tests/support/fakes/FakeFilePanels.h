#pragma once

#include "platform/filepanels/FilePanels.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <utility>

namespace lumenfold::test {

/// Panels that a test answers.
class FakeFilePanels : public FilePanels {
public:
    void save(QWidget &window, const QString &suggestedPath, Chosen chosen) override
    {
        suggestedPaths.append(suggestedPath);
        m_window = &window;
        m_chosen = std::move(chosen);
    }

    [[nodiscard]] QStringList open(QWidget &, Count count) override
    {
        openPanels.append(count);
        if (whileOpen) {
            whileOpen();
        }
        return std::exchange(m_isCancelled, false) ? QStringList() : filesToOpen;
    }

    void cancelOpen() override { m_isCancelled = true; }

    /// True while a panel for saving is up.
    [[nodiscard]] bool isAsking() const { return m_window && m_chosen; }
    /// The user's answer to it.
    void choose(const std::optional<QString> &path)
    {
        if (isAsking()) {
            std::exchange(m_chosen, nullptr)(path);
        }
    }

    /// Of every panel for saving, oldest first.
    QStringList suggestedPaths;
    QList<Count> openPanels;
    /// What is chosen in a panel for opening; nothing: it is closed.
    QStringList filesToOpen;
    /// What happens while one is up.
    std::function<void()> whileOpen;

private:
    QPointer<QWidget> m_window;
    Chosen m_chosen;
    bool m_isCancelled = false;
};

} // namespace lumenfold::test
