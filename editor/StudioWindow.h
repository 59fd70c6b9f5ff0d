#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

#include <functional>

class QLabel;
class QStackedLayout;
class QVBoxLayout;

namespace lumenfold {

class Spinner;

/// The editor's window: the page, or a word about why there is none, on the dark ground on which the page comes up.
class StudioWindow : public QWidget {
    Q_OBJECT

public:
    /// The ground of the window and of a page that is still loading.
    static constexpr QColor loadingBackground{23, 25, 35};

    struct Button {
        QString text;
        std::function<void()> action;
    };
    struct Notice {
        QString title;
        QString text;
        /// The first is the default button.
        QList<Button> buttons;
    };

    StudioWindow();

    /// Where the page's view belongs; see showPage().
    [[nodiscard]] QWidget *stage() const { return m_stage; }
    /// A wheel that turns, for as long as there is nothing to see of the page.
    void showWaiting();
    void showPage(QWidget *page);
    void showNotice(const Notice &notice);
    [[nodiscard]] bool showsNotice() const;

Q_SIGNALS:
    void closing();
    /// The user pressed a key or a button in it.
    void inputReceived();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QStackedLayout *m_layout;
    QWidget *m_waiting;
    Spinner *m_spinner;
    QWidget *m_stage;
    QWidget *m_notice;
    QLabel *m_title;
    QLabel *m_text;
    QWidget *m_buttons;
};

} // namespace lumenfold
