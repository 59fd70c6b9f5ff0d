#pragma once

#include "cards/face/FullPicture.h"
#include "platform/image/Image.h"
#include "platform/panels/PanelContentShape.h"

#include <QWidget>

#include <functional>

namespace lumenfold {

class Appearance;
class CornerButton;
class PanelFactory;

/// One picture as large as its panel allows, with a button that closes it.
class ImagePreviewView : public QWidget, public PanelContentShape {
    Q_OBJECT

public:
    struct Options {
        Image image;
        /// The transparent band around the picture, in points.
        double hitMargin = 0;
        std::function<void()> onClose;
    };

    /// The appearance and the panels must outlive the view.
    ImagePreviewView(const Options &options, const Appearance &appearance, const PanelFactory &panels);
    ~ImagePreviewView() override;

    /// The picture's place in the view.
    [[nodiscard]] QRect content() const;
    [[nodiscard]] const FullPicture &picture() const { return m_picture; }

    [[nodiscard]] QRegion opaqueShape(double scale) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QRect closeButtonPlace() const;

    const int m_hitMargin;
    const Appearance &m_appearance;
    const PanelFactory &m_panels;
    FullPicture m_picture;
    CornerButton *m_close;
};

} // namespace lumenfold
