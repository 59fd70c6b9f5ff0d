#include "platform/filepanels/QtPanel.h"

#include <QFileDialog>

namespace lumenfold {

QFileDialog *makeQtPanel(QWidget *window)
{
    auto *panel = new QFileDialog(window);
    panel->setAttribute(Qt::WA_WindowPropagation);
    panel->setWindowModality(Qt::WindowModal);
    return panel;
}

} // namespace lumenfold
