#pragma once

#include "platform/pasteboard/Pasteboard.h"
#include "platform/pasteboard/qt/PngMimeData.h"

#include <QObject>
#include <QPointer>

namespace lumenfold {

/// The clipboard of the session, through the toolkit.
///
/// The exchange format for pictures here is PNG itself, so an image and its PNG bytes are one and the same offer. The
/// clipboard is taken when the first of them is written, and what is written next joins it: other programs see one
/// change of the clipboard. Contents that are cleared and not written again are gone by the next turn of the event
/// loop. An image that cannot be encoded can be offered to nobody, so it leaves the clipboard empty; one whose encoding
/// turns out to fail later is withdrawn then.
///
/// When the QGuiApplication ends, it hands the contents to the clipboard manager, if one is running: it waits for five
/// seconds at most, and not at all without one. A picture whose PNG is larger than the X server's largest request (16
/// MB as a rule) cannot be handed over then and goes with the program.
class QtPasteboard : public QObject, public Pasteboard {
    Q_OBJECT

public:
    /// Needs a QGuiApplication.
    QtPasteboard() = default;

    void clearContents() override;
    void writeImage(const Image &image) override;
    void setPngData(const QByteArray &png) override;

private:
    /// Takes the clipboard for a new set of contents.
    void offer(std::unique_ptr<PngMimeData> contents);
    void emptyClipboard();

    /// What the clipboard holds of ours; null from the moment another program takes the clipboard.
    QPointer<PngMimeData> m_contents;
    bool m_cleared = false;
};

} // namespace lumenfold
