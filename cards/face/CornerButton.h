#pragma once

#include "app/theme/Symbol.h"

#include <QAbstractButton>

namespace lumenfold {

class Appearance;
class PanelFactory;

/// A round button at a corner of a picture. Its shadow falls outside it and is painted by whoever lies beneath
/// (`paintCornerButtonShadow`), so that the button takes no room from the picture.
class CornerButton : public QAbstractButton {
    Q_OBJECT

public:
    struct Options {
        Symbol symbol = Symbol::xmark;
        /// The point size of the symbol.
        double iconSize = 0;
        /// Shown as the tool tip and read out.
        QString title;
    };

    /// The appearance and the panels must outlive the button.
    CornerButton(const Options &options, const Appearance &appearance, const PanelFactory &panels, QWidget *parent);
    ~CornerButton() override;

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol m_symbol;
    const double m_iconSize;
    const Appearance &m_appearance;
    const PanelFactory &m_panels;
};

/// The shadow of a corner button that stands there.
void paintCornerButtonShadow(QPainter &painter, const QRectF &button);

} // namespace lumenfold
