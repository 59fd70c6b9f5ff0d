#pragma once

#include "platform/filepanels/OpenPanel.h"

namespace lumenfold {

/// The toolkit's own panel, in the colours of the window that it belongs to.
class QtOpenPanel : public OpenPanel {
public:
    [[nodiscard]] QCoro::Task<std::optional<QString>> chooseDirectory(Request request) override;
};

} // namespace lumenfold
