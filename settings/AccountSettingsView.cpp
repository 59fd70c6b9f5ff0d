#include "settings/AccountSettingsView.h"

#include "app/configuration/Palette.h"
#include "app/theme/SecondaryLabel.h"
#include "app/theme/SymbolView.h"
#include "app/theme/WindowTheme.h"
#include "service/ApiKeySetupWindow.h"
#include "service/AuthService.h"
#include "settings/SettingsSection.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

// Points.
constexpr int pageMargin = 40;
constexpr int lineSpacing = 10;
constexpr int badgeSpacing = 8;
constexpr int buttonSpacing = 10;
constexpr int beforeButtons = 8;
constexpr double badgePointSize = 18;

} // namespace

AccountSettingsView::AccountSettingsView(const Collaborators &collaborators, QWidget *parent)
    : QWidget(parent), m_with(collaborators), m_pages(new QStackedWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_pages);
    m_pages->addWidget(makeNotConnected());
    m_pages->addWidget(makeConnected());
    connect(&m_with.appearance, &Appearance::changed, this, &AccountSettingsView::showColors);
    showColors();
}

AccountSettingsView::Page AccountSettingsView::makePage(Symbol symbol, const QString &headline)
{
    auto *page = new QWidget(m_pages);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(pageMargin, 0, pageMargin, pageMargin);
    column->setSpacing(lineSpacing);
    column->addStretch(1);
    auto *row = new QHBoxLayout;
    row->setSpacing(badgeSpacing);
    auto *view = new SymbolView(symbol, badgePointSize, page);
    auto *label = new QLabel(headline, page);
    label->setTextFormat(Qt::PlainText);
    label->setFont(headlineFont(page->font()));
    row->addStretch(1);
    row->addWidget(view);
    row->addWidget(label);
    row->addStretch(1);
    column->addLayout(row);
    return {.widget = page, .symbol = view, .column = column};
}

void AccountSettingsView::addText(const Page &page, QLabel *label)
{
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter);
    page.column->addWidget(label);
}

QWidget *AccountSettingsView::makeNotConnected()
{
    const Page page = makePage(Symbol::personCropCircleBadgeExclamationmark, tr("Not connected"));
    addText(page, new SecondaryLabel(tr("Connect with your API key to enable Save to LumenFold. Screenshot capture, "
                                        "copy, save to disk, and pin all work without it."),
                                     page.widget));
    auto *button = new QPushButton(tr("Connect with API Key…"), page.widget);
    button->setDefault(true);
    widenButton(*button);
    connect(button, &QPushButton::clicked, this, [this] { m_with.apiKeySetup.present(); });
    page.column->addSpacing(beforeButtons);
    page.column->addWidget(button, 0, Qt::AlignHCenter);
    page.column->addStretch(1);
    return page.widget;
}

QWidget *AccountSettingsView::makeConnected()
{
    const Page page = makePage(Symbol::checkmarkSealFill, tr("Connected to LumenFold"));
    m_seal = page.symbol;
    m_email = new SecondaryLabel({}, page.widget);
    m_email->setTextInteractionFlags(Qt::TextSelectableByMouse);
    addText(page, m_email);
    addText(page, new QLabel(tr("Screenshots can be saved straight to your LumenFold assets."), page.widget));
    auto *change = new QPushButton(tr("Change API Key…"), page.widget);
    m_disconnect = new QPushButton(tr("Disconnect"), page.widget);
    widenButton(*change);
    widenButton(*m_disconnect);
    connect(change, &QPushButton::clicked, this, [this] { m_with.apiKeySetup.present(); });
    connect(m_disconnect, &QPushButton::clicked, this, [this] { m_with.auth.signOut(); });
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    buttons->addStretch(1);
    buttons->addWidget(change);
    buttons->addWidget(m_disconnect);
    buttons->addStretch(1);
    page.column->addSpacing(beforeButtons);
    page.column->addLayout(buttons);
    page.column->addStretch(1);
    return page.widget;
}

void AccountSettingsView::setSignedIn(bool isSignedIn)
{
    const QString email = m_with.auth.userEmail().value_or(QString());
    m_email->setText(email);
    m_email->setVisible(!email.isEmpty());
    m_pages->setCurrentIndex(isSignedIn ? 1 : 0);
}

void AccountSettingsView::showColors()
{
    const ColorScheme scheme = m_with.appearance.colorScheme();
    m_seal->setColor(palette::statusGood.in(scheme));
    QPalette destructive;
    destructive.setColor(QPalette::Active, QPalette::ButtonText, palette::statusFailure.in(scheme));
    destructive.setColor(QPalette::Inactive, QPalette::ButtonText, palette::statusFailure.in(scheme));
    m_disconnect->setPalette(destructive);
}

} // namespace lumenfold
