#pragma once

#include <QWidget>

class QVBoxLayout;

namespace lumenfold {

/// What belongs together in a page of settings, beneath a headline. To assistive technologies it is a group of that
/// name.
class SettingsSection : public QWidget {
    Q_OBJECT

public:
    explicit SettingsSection(const QString &title, QWidget *parent = nullptr);

    void addRow(QWidget *row);
    /// Something small and faint that explains; as many lines as it needs.
    void addCaption(const QString &text, const QString &toolTip = {});

private:
    QVBoxLayout *m_rows;
};

/// A line between two sections, with 4 points above and below it.
class SettingsDivider : public QWidget {
    Q_OBJECT

public:
    explicit SettingsDivider(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// The font of headlines: that of the texts, bold.
[[nodiscard]] QFont headlineFont(const QFont &text);

} // namespace lumenfold
