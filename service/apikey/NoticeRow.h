#pragma once

#include <QWidget>

class QLabel;

namespace lumenfold {

/// A warning triangle and a message of one or more lines beside it. Hidden while there is no message.
class NoticeRow : public QWidget {
    Q_OBJECT

public:
    explicit NoticeRow(QWidget *parent = nullptr);

    /// What is shown may be the words of a server; none of it is markup. Assistive technologies read it aloud.
    void setMessage(const QString &message);
    [[nodiscard]] QString message() const;
    /// Of the triangle and the words. Without one, the window's own.
    void setColor(const QColor &color);

private:
    class Triangle;

    Triangle *m_triangle;
    QLabel *m_words;
};

} // namespace lumenfold
