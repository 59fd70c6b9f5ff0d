#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lumenfold {

/// What every state of the update window begins with: the program's icon, and beside it a heading and a sentence.
class UpdateHeader : public QWidget {
    Q_OBJECT

public:
    /// Plain texts; `text` may be empty. Assistive technologies read both aloud when the header is first shown.
    UpdateHeader(const QString &heading, const QString &text, QWidget *parent = nullptr);

    /// Something below the sentence.
    void append(QWidget *widget);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QVBoxLayout *m_words;
};

/// Points.
namespace updateWindow {
inline constexpr int padding = 24;
inline constexpr int spacing = 16;
inline constexpr int buttonSpacing = 8;
inline constexpr int noticeWidth = 420;
inline constexpr int offerWidth = 560;
inline constexpr int offerHeight = 440;
} // namespace updateWindow

} // namespace lumenfold
