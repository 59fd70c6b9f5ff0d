#include "platform/filepanels/QtFilePanels.h"

#include "platform/filepanels/QtPanel.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace lumenfold {

void QtFilePanels::save(QWidget &window, const QString &suggestedPath, Chosen chosen)
{
    QFileDialog *panel = makeQtPanel(&window);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    const QFileInfo suggested(suggestedPath);
    panel->setDirectory(suggested.path());
    panel->selectFile(suggested.fileName());
    QObject::connect(panel, &QFileDialog::finished, panel, [panel, done = std::move(chosen)](int result) {
        const QStringList paths = panel->selectedFiles();
        const bool isChosen = result == QDialog::Accepted && !paths.isEmpty();
        done(isChosen ? std::optional(QDir::cleanPath(paths.constFirst())) : std::nullopt);
    });
    panel->show();
}

QStringList QtFilePanels::open(QWidget &window, Count count)
{
    if (m_open) {
        return {};
    }
    m_open = makeQtPanel(&window);
    m_open->setAcceptMode(QFileDialog::AcceptOpen);
    m_open->setFileMode(count == Count::several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    const int result = m_open->exec();
    // The window may have taken it along.
    if (!m_open) {
        return {};
    }
    const QStringList paths = result == QDialog::Accepted ? m_open->selectedFiles() : QStringList();
    delete m_open;
    return paths;
}

void QtFilePanels::cancelOpen()
{
    if (m_open) {
        m_open->reject();
    }
}

} // namespace lumenfold
