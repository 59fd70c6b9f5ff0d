#pragma once

#include "cards/PreviewCardVariant.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <variant>

namespace lumenfold {

class AppConfig;

/// One card's state, shared by its view, its overlays and the stack controller. Does no window work. Main thread.
class PreviewModel : public QObject {
    Q_OBJECT

public:
    /// Nothing in progress.
    struct Idle {
        friend bool operator==(const Idle &, const Idle &) = default;
    };
    struct Uploading {
        friend bool operator==(const Uploading &, const Uploading &) = default;
    };
    struct Uploaded {
        /// The link that was produced, if any.
        std::optional<QUrl> url;
        friend bool operator==(const Uploaded &, const Uploaded &) = default;
    };
    struct Failed {
        /// Shown on the card.
        QString message;
        friend bool operator==(const Failed &, const Failed &) = default;
    };
    using Status = std::variant<Idle, Uploading, Uploaded, Failed>;

    struct Options {
        Image image;
        /// The image when absent.
        std::optional<Image> editorSourceImage;
        /// The screenshot id when absent.
        std::optional<QString> editorSourceId;
        PreviewCardVariant variant = PreviewCardVariant::stack;
        /// A fresh UUID in upper case when absent.
        std::optional<QString> id;
    };

    /// `config` gives the first card size and is not kept.
    PreviewModel(const AppConfig &config, Options options);
    ~PreviewModel() override;

    [[nodiscard]] const Image &image() const { return m_image; }
    /// What the editor is given.
    [[nodiscard]] const Image &editorSourceImage() const { return m_editorSourceImage; }
    [[nodiscard]] PreviewCardVariant variant() const { return m_variant; }
    /// The card's identity; also the key under which its images are stored.
    [[nodiscard]] const QString &screenshotId() const { return m_screenshotId; }
    [[nodiscard]] const QString &editorSourceId() const { return m_editorSourceId; }

    [[nodiscard]] const Status &status() const { return m_status; }
    void setStatus(Status status);

    /// The visible card in points, without the hit margin around it. The column lays its cards out at the default size
    /// whatever this says.
    [[nodiscard]] Size cardSize() const { return m_cardSize; }

    /// Whether the card lies behind another one of a deck. Only the layout sets it.
    [[nodiscard]] bool deckBehind() const { return m_deckBehind; }
    void setDeckBehind(bool behind);

    /// Whether the column is collapsed and its deck not revealed. Only the layout sets it.
    [[nodiscard]] bool collapsed() const { return m_collapsed; }
    void setCollapsed(bool collapsed);

    /// Width by height of the image in pixels.
    [[nodiscard]] double aspectRatio() const;

    /// Resizes in proportion, within the smallest and largest card width. Tells `onSizeChanged`, unless the width stays
    /// the same within 0.1.
    void setCardWidth(double width);

    /// Twice as wide (within the largest width) and in the image's own proportions. Tells nobody but the observers.
    void lockSizeToImageRatio();

    /// Takes over a size measured from the card's panel, unless both dimensions stay the same within 0.1. Tells nobody
    /// but the observers.
    void syncCardSizeFromWindow(Size size);

    /// What the view and the overlays report and the controller answers; each may be empty. Translations are totals
    /// since the drag began, in points, y upwards.
    std::function<void()> onDismiss;
    std::function<void()> onPinRequested;
    std::function<void()> onEditRequested;
    std::function<void(Size size)> onSizeChanged;
    std::function<void()> onPanDragBegan;
    std::function<void(Size translation)> onPanDragChanged;
    std::function<void()> onPanDragEnded;
    std::function<void(PreviewResizeCorner corner)> onResizeDragBegan;
    std::function<void(PreviewResizeCorner corner, Size translation)> onResizeDragChanged;
    std::function<void()> onResizeDragEnded;
    std::function<void()> onBringToFront;
    std::function<void()> onExpandRequested;
    /// The image's file turned out to be broken or gone before the card could show anything.
    std::function<void()> onImageUnreadable;

Q_SIGNALS:
    /// Each just before the field changes, with what it is going to be; not when the value stays the same.
    void statusWillChange(const lumenfold::PreviewModel::Status &next);
    void cardSizeWillChange(lumenfold::Size next);
    void deckBehindWillChange(bool next);
    void collapsedWillChange(bool next);

private:
    void setCardSize(Size size);

    const Image m_image;
    const Image m_editorSourceImage;
    const PreviewCardVariant m_variant;
    const QString m_screenshotId;
    const QString m_editorSourceId;
    Status m_status;
    Size m_cardSize;
    bool m_deckBehind = false;
    bool m_collapsed = false;
};

} // namespace lumenfold
