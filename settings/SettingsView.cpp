#include "settings/SettingsView.h"

#include "app/theme/WindowTheme.h"
#include "service/AuthService.h"
#include "settings/SettingsTabBar.h"

#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

/// Above and below the tabs; points.
constexpr int tabMargin = 4;

} // namespace

SettingsView::SettingsView(const Collaborators &collaborators, QWidget *parent)
    : QWidget(parent)
    , m_auth(collaborators.account.auth)
    , m_tabs(new SettingsTabBar(this))
    , m_pages(new QStackedWidget(this))
    , isSignedIn(m_auth.isSignedIn())
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, tabMargin, 0, 0);
    column->setSpacing(tabMargin + 1);
    column->addWidget(m_tabs, 0, Qt::AlignHCenter);
    column->addWidget(m_pages, 1);

    addPage(Symbol::gearshape, tr("General"), new GeneralSettingsView(collaborators.general, m_pages));
    addPage(Symbol::squareOnSquare, tr("Template"), new TemplatePickerView(collaborators.templates, m_pages));
    m_account = new AccountSettingsView(collaborators.account, m_pages);
    addPage(Symbol::personCircle, tr("Account"), m_account);
    m_account->setSignedIn(isSignedIn);
    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    addShortcuts();

    m_accountObservation = collaborators.general.notifications.observe(
        AuthService::authStateChangedNotification, [this](const Notification &) { accountChanged(); });
    // At first nobody has the keyboard, and Tab goes to the tabs.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
}

SettingsView::~SettingsView() = default;

void SettingsView::addPage(Symbol symbol, const QString &label, QWidget *page)
{
    m_tabs->addPage(symbol, label);
    m_pages->addWidget(page);
}

void SettingsView::addShortcuts()
{
    const auto add = [this](const QKeySequence &keys, int by) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [this, by] { turnPages(by); });
    };
    add(QKeySequence(Qt::CTRL | Qt::Key_PageDown), 1);
    add(QKeySequence(Qt::CTRL | Qt::Key_PageUp), -1);
}

void SettingsView::turnPages(int by)
{
    const int count = m_tabs->count();
    m_tabs->setCurrentIndex((m_tabs->currentIndex() + by + count) % count);
}

void SettingsView::accountChanged()
{
    isSignedIn = m_auth.isSignedIn();
    m_account->setSignedIn(isSignedIn);
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    // No shortcuts, which would have to name what each keyboard layout makes of Shift and Tab.
    const bool isBackwards = event->key() == Qt::Key_Backtab;
    if (event->modifiers().testFlag(Qt::ControlModifier) && (isBackwards || event->key() == Qt::Key_Tab)) {
        turnPages(isBackwards ? -1 : 1);
        return;
    }
    QWidget::keyPressEvent(event);
}

void SettingsView::paintEvent(QPaintEvent *)
{
    // The line between the tabs and their page.
    QPainter(this).fillRect(0, m_pages->y() - 1, width(), 1, separatorColor(palette()));
}

} // namespace lumenfold
