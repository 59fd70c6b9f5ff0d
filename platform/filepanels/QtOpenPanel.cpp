#include "platform/filepanels/QtOpenPanel.h"

#include "platform/filepanels/QtPanel.h"

#include <QCoroSignal>

#include <QFileDialog>
#include <QPointer>

namespace lumenfold {

QCoro::Task<std::optional<QString>> QtOpenPanel::chooseDirectory(Request request)
{
    const QPointer<QFileDialog> panel(makeQtPanel(request.window));
    panel->setWindowTitle(request.title);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, request.prompt);
    panel->setDirectory(request.directory);
    panel->show();
    const int result = co_await qCoro(panel.data(), &QFileDialog::finished);
    if (!panel) {
        co_return std::nullopt;
    }
    const QStringList chosen = panel->selectedFiles();
    panel->deleteLater();
    if (result != QDialog::Accepted || chosen.isEmpty()) {
        co_return std::nullopt;
    }
    co_return chosen.constFirst();
}

} // namespace lumenfold
