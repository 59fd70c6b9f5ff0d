#pragma once

#include "platform/notifications/NotificationCenter.h"
#include "service/templates/TemplatePickerView.h"
#include "settings/AccountSettingsView.h"
#include "settings/GeneralSettingsView.h"

#include <QWidget>

#include <memory>

class QStackedWidget;

namespace lumenfold {

class SettingsTabBar;

/// What the settings window shows: three tabs, and the page of the one that is chosen. 520 x 460 points.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    struct Collaborators {
        GeneralSettingsView::Collaborators general;
        TemplatePickerView::Collaborators templates;
        AccountSettingsView::Collaborators account;
    };

    static constexpr QSize size{520, 460};

    explicit SettingsView(const Collaborators &collaborators, QWidget *parent = nullptr);
    ~SettingsView() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void addPage(Symbol symbol, const QString &label, QWidget *page);
    void addShortcuts();
    void turnPages(int by);
    void accountChanged();

    AuthService &m_auth;
    SettingsTabBar *const m_tabs;
    QStackedWidget *const m_pages;
    AccountSettingsView *m_account = nullptr;
    bool isSignedIn;
    std::unique_ptr<NotificationCenter::Observation> m_accountObservation;
};

} // namespace lumenfold
