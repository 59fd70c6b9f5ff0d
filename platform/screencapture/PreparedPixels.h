#pragma once

#include "platform/screencapture/AttachedPixels.h"

#include <QCoroTask>
#include <QRect>
#include <QTimer>

#include <cstdint>
#include <memory>

namespace lumenfold {

/// Memory for a picture that is going to be taken in a moment. The system provides memory page by page as it is written
/// to, and gives it page by page to each program that shares it; for a large screen that takes several times as long as
/// copying the pixels. Here it happens beforehand: on another thread for this program, and for the server by having it
/// write the picture once, a band at a time, while nobody waits for it. Main thread.
class PreparedPixels {
public:
    /// The connection is used by what is taken and by what is under way, as long as it is there.
    explicit PreparedPixels(x11::X11Connection &connection);
    PreparedPixels(const PreparedPixels &) = delete;
    PreparedPixels &operator=(const PreparedPixels &) = delete;
    ~PreparedPixels();

    /// Begins, for a part of a drawable whose lines take so many bytes. What nobody takes within a second is given
    /// back.
    void prepare(std::uint32_t drawable, QRect part, qsizetype bytesPerLine);

    /// What was prepared, as far as it got, if it is of this size; else new memory. Null when the system refuses.
    [[nodiscard]] std::unique_ptr<AttachedPixels> take(std::size_t bytes);

private:
    struct Shelf;
    static QCoro::Task<> attachAndWrite(std::shared_ptr<Shelf> shelf, QPointer<x11::X11Connection> connection,
                                        std::uint32_t drawable, QRect part, qsizetype bytesPerLine);
    void giveBack();

    x11::X11Connection &m_connection;
    std::shared_ptr<Shelf> m_shelf;
    QTimer m_end;
};

} // namespace lumenfold
