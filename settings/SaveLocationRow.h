#pragma once

#include <QCoroTask>
#include <QString>
#include <QWidget>

class QPushButton;

namespace lumenfold {

class AppConfig;
class OpenPanel;
class PathLabel;
class SymbolView;

/// Where saved screenshots go, and how that is changed.
class SaveLocationRow : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the row.
    SaveLocationRow(AppConfig &config, OpenPanel &openPanel, QWidget *parent = nullptr);

    /// Shows what the configuration says now.
    void read();

protected:
    void changeEvent(QEvent *event) override;

private:
    QCoro::Task<> choose();
    void useDefault();
    void showPath(const QString &path, bool isCustom);
    void drawSymbol();

    AppConfig &m_config;
    OpenPanel &m_openPanel;
    bool m_isChoosing = false;
    SymbolView *const m_symbol;
    PathLabel *const m_path;
    QPushButton *const m_choose;
    QPushButton *const m_useDefault;
};

} // namespace lumenfold
