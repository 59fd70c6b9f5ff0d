#pragma once

#include "app/theme/Symbol.h"

#include <QTabBar>

#include <vector>

namespace lumenfold {

/// The tabs of the settings window, in its middle: a symbol with its label beneath. Painted by itself, from the
/// window's palette, so that it looks the same with every style of the toolkit.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget *parent = nullptr);

    void addPage(Symbol symbol, const QString &label);

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QFont labelFont() const;
    void paintTab(QPainter &painter, int index) const;

    std::vector<Symbol> m_symbols;
};

} // namespace lumenfold
