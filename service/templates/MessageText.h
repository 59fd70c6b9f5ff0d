#pragma once

#include <QLabel>

namespace lumenfold {

/// A text of any origin and length in the middle of its room: broken into lines where need be within words, and cut off
/// where the room ends; a tool tip then has more of it. Never taken for mark-up.
class MessageText : public QLabel {
    Q_OBJECT

public:
    explicit MessageText(QWidget *parent = nullptr);

    /// Only the beginning of a very long one is kept.
    void setMessage(const QString &message);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QStringList linesIn(int width) const;
    void updateToolTip();
};

} // namespace lumenfold
