#pragma once

#include <QLineEdit>

class QAction;

namespace lumenfold {

/// The field that templates are searched with, with its symbol and a button that empties it.
class TemplateSearchField : public QLineEdit {
    Q_OBJECT

public:
    explicit TemplateSearchField(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void drawSymbols();

    QAction *const m_symbol;
    QAction *const m_clear;
};

} // namespace lumenfold
