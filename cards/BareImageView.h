#pragma once

#include "cards/CardPicture.h"
#include "cards/CardViewFactory.h"
#include "platform/panels/PanelContentShape.h"

#include <QWidget>

#include <memory>

namespace lumenfold {

class PanelFactory;
class PreviewModel;

/// A card with nothing on it but its image: rounded, framed, with a shadow where windows blend.
class BareImageView : public QWidget, public PanelContentShape {
    Q_OBJECT

public:
    /// `panels` says whether windows blend; it must outlive the view.
    BareImageView(std::shared_ptr<PreviewModel> model, const PanelFactory &panels);
    ~BareImageView() override;

    [[nodiscard]] QRegion opaqueShape() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    /// The visible card in the view's coordinates.
    [[nodiscard]] QRectF cardRect() const;

    const std::shared_ptr<PreviewModel> m_model;
    const PanelFactory &m_panels;
    CardPicture m_picture;
};

class BareImageViews : public CardViewFactory {
public:
    /// `panels` must outlive the views.
    explicit BareImageViews(const PanelFactory &panels);

    [[nodiscard]] std::unique_ptr<QWidget> makeCardView(std::shared_ptr<PreviewModel> model) override;

private:
    const PanelFactory &m_panels;
};

} // namespace lumenfold
