#pragma once

class QFileDialog;
class QWidget;

namespace lumenfold {

/// A panel of the toolkit's own, not shown yet, in front of that window alone and in its colours. Owned by the window,
/// or by the caller if there is none.
[[nodiscard]] QFileDialog *makeQtPanel(QWidget *window);

} // namespace lumenfold
