#pragma once

#include <QAbstractButton>

namespace lumenfold {

/// Words with a symbol of leaving the program behind them, in the colour of links. Reached and pressed like a button.
class LinkButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit LinkButton(const QString &text, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace lumenfold
