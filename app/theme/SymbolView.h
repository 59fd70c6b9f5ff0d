#pragma once

#include "app/theme/Symbol.h"

#include <QWidget>

namespace lumenfold {

/// A symbol that stands in a window and says nothing to assistive technologies: the words beside it do.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    /// As large as a letter of `pointSize` points would be.
    SymbolView(Symbol symbol, double pointSize, QWidget *parent = nullptr);

    /// Without one, the colour of the window's text.
    void setColor(const QColor &color);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol m_symbol;
    const double m_pointSize;
    QColor m_color;
};

} // namespace lumenfold
