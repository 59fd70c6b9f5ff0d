#pragma once

#include <QWidget>

namespace lumenfold {

/// One thing to tell: the program's icon, a heading, a sentence, and a button that closes the window.
class UpdateNotice : public QWidget {
    Q_OBJECT

public:
    enum class Activity { none, underWay };

    struct Content {
        QString heading;
        /// Plain text; may be empty.
        QString text{};
        QString button;
        Activity activity = Activity::none;
    };

    explicit UpdateNotice(const Content &content, QWidget *parent = nullptr);

Q_SIGNALS:
    void closed();
};

} // namespace lumenfold
