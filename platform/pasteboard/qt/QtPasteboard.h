#pragma once

#include "platform/pasteboard/Pasteboard.h"
#include "platform/pasteboard/qt/PngMimeData.h"

#include <QObject>
#include <QPointer>

#include <optional>

namespace lumenfold {

/// The clipboard of the session, through the toolkit.
///
/// The exchange format for pictures here is PNG itself, so an image and its PNG bytes are one and the same offer. The
/// clipboard is taken once the first bytes are there, and what is written next joins them: other programs see one
/// change of the clipboard. The toolkit must answer a program that pastes on the spot, so an offer made while an image
/// is still being encoded would have the main thread wait for it; until then the clipboard is as it was. Contents that
/// are cleared and not written again are gone by the next turn of the event loop. An image that cannot be encoded can
/// be offered to nobody, so it leaves the clipboard empty.
///
/// When the QGuiApplication ends, it hands the contents to the clipboard manager, if one is running: it waits for five
/// seconds at most, and not at all without one. A picture whose PNG is larger than the X server's largest request (16
/// MB as a rule) cannot be handed over then and goes with the program.
class QtPasteboard : public QObject, public Pasteboard {
    Q_OBJECT

public:
    /// Needs a QGuiApplication.
    QtPasteboard();
    /// Waits for an image that is still being encoded and offers it.
    ~QtPasteboard() override;

    void clearContents() override;
    void writeImage(const Image &image) override;
    void setPngData(const QByteArray &png) override;

private:
    /// Takes the clipboard for a new set of contents.
    void offer(const QByteArray &png);
    void offerOnceEncoded(const Image &image);
    void emptyClipboard();

    /// What the clipboard holds of ours; null from the moment another program takes the clipboard.
    QPointer<PngMimeData> m_contents;
    /// What is going to be offered.
    std::optional<Image> m_awaited;
    /// Tells sets of contents apart.
    int m_set = 0;
    bool m_cleared = false;
    bool m_otherProgramCopied = false;
};

} // namespace lumenfold
