#pragma once

#include "cards/CardPicture.h"
#include "platform/image/Image.h"

#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QWidget>

#include <functional>
#include <optional>

class QAbstractButton;

namespace lumenfold {

class PanelFactory;

/// A card's picture, which fills the view and can be opened with a double click and dragged out into other programs.
class DraggableImageView : public QWidget {
    Q_OBJECT

public:
    /// Each may be empty.
    struct Callbacks {
        std::function<void()> onDoubleClick;
        /// The user has begun to drag the picture: the left button is held and has been moved since it was pressed at
        /// that place of the view. Called once for each press, inside the event.
        std::function<void(QPoint pressedAt)> onDragBegan;
        /// The buttons that come over the picture with the pointer, as long as there are any. Assistive technologies,
        /// which pass over what is not seen, press them by way of the picture.
        std::function<QList<QAbstractButton *>()> buttons;
        /// There is no picture to show: its file is broken or gone.
        std::function<void()> onUnreadable;
    };

    /// `panels` says whether windows blend; it must outlive the view.
    DraggableImageView(Image image, Callbacks callbacks, const PanelFactory &panels, QWidget *parent);
    ~DraggableImageView() override;

    [[nodiscard]] const Image &image() const { return m_image; }

    [[nodiscard]] bool isDragEnabled() const { return m_isDragEnabled; }
    void setDragEnabled(bool enabled) { m_isDragEnabled = enabled; }

    /// Of a card that is smaller for a while a copy that is a little too large will do.
    void setSharpness(CardPicture::Sharpness sharpness);

    /// As it is seen now, without what lies on it.
    [[nodiscard]] QPixmap visiblePicture();

    /// What a double click does.
    void expand();
    [[nodiscard]] QList<QAbstractButton *> buttons() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    const Image m_image;
    const Callbacks m_callbacks;
    const PanelFactory &m_panels;
    CardPicture m_picture;
    CardPicture::Sharpness m_sharpness = CardPicture::Sharpness::exact;
    bool m_isDragEnabled = true;
    /// While the left button is held and nothing has been dragged.
    std::optional<QPoint> m_pressedAt;
};

} // namespace lumenfold
