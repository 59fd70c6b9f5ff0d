#pragma once

#include <QLabel>

namespace lumenfold {

/// Plain text that is written beside the main thing, in a fainter colour that follows the window's.
class SecondaryLabel : public QLabel {
    Q_OBJECT

public:
    explicit SecondaryLabel(const QString &text, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColor();
};

} // namespace lumenfold
