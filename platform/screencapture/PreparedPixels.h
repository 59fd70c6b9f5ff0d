#pragma once

#include "platform/screencapture/SharedPixels.h"

#include <QTimer>

#include <cstddef>
#include <memory>

namespace lumenfold {

/// Memory for a picture that is going to be taken in a moment. The system fills memory with zeros page by page as it is
/// written to, which for a large screen takes as long as reading the screen itself; here it happens beforehand, on
/// another thread. Main thread.
class PreparedPixels {
public:
    PreparedPixels();
    PreparedPixels(const PreparedPixels &) = delete;
    PreparedPixels &operator=(const PreparedPixels &) = delete;
    ~PreparedPixels();

    /// Begins. What nobody takes within a second is given back.
    void prepare(std::size_t bytes);

    /// What was prepared, if it is ready and of this size, else new memory; null when the system refuses.
    [[nodiscard]] std::unique_ptr<SharedPixels> take(std::size_t bytes);

private:
    struct Shelf;
    std::shared_ptr<Shelf> m_shelf;
    QTimer m_end;
};

} // namespace lumenfold
