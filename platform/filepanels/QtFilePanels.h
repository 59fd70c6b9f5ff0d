#pragma once

#include "platform/filepanels/FilePanels.h"

#include <QFileDialog>
#include <QPointer>

namespace lumenfold {

/// The toolkit's own panels, in the colours of the window that they belong to.
class QtFilePanels : public FilePanels {
public:
    void save(QWidget &window, const QString &suggestedPath, Chosen chosen) override;
    [[nodiscard]] QStringList open(QWidget &window, Count count) override;
    void cancelOpen() override;

private:
    QPointer<QFileDialog> m_open;
};

} // namespace lumenfold
