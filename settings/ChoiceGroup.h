#pragma once

#include <QList>
#include <QWidget>

class QButtonGroup;

namespace lumenfold {

/// A title with radio buttons beneath it, of which one is chosen.
class ChoiceGroup : public QWidget {
    Q_OBJECT

public:
    struct Choice {
        int value;
        QString label;
    };

    ChoiceGroup(const QString &title, const QList<Choice> &choices, QWidget *parent = nullptr);

    /// Shows what is chosen; tells nobody.
    void setValue(int value);

Q_SIGNALS:
    /// The user has chosen another one.
    void chosen(int value);

private:
    QButtonGroup *m_buttons;
};

} // namespace lumenfold
