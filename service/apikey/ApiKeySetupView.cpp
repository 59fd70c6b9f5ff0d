#include "service/apikey/ApiKeySetupView.h"

#include "app/configuration/AppConfig.h"
#include "app/configuration/Palette.h"
#include "app/theme/Spinner.h"
#include "platform/appearance/Appearance.h"
#include "platform/workspace/Workspace.h"
#include "service/AuthService.h"
#include "service/apikey/LinkButton.h"
#include "service/apikey/NoticeRow.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace lumenfold {
namespace {

/// Points.
constexpr int viewWidth = 420;
constexpr int padding = 24;
constexpr int blockSpacing = 16;
constexpr int labelSpacing = 6;
constexpr int progressSpacing = 10;
constexpr double headingSize = 1.4;

} // namespace

ApiKeySetupView::ApiKeySetupView(const Collaborators &collaborators, std::function<void()> onConnected, QWidget *parent)
    : QWidget(parent)
    , m_with(collaborators)
    , m_onConnected(std::move(onConnected))
    , m_key(new QLineEdit(this))
    , m_keyringHint(new NoticeRow(this))
    , m_error(new NoticeRow(this))
    , m_connect(new QPushButton(tr("Connect"), this))
    , m_progress(new Spinner(this))
{
    setFixedWidth(viewWidth);
    auto *blocks = new QVBoxLayout(this);
    blocks->setContentsMargins(padding, padding, padding, padding);
    blocks->setSpacing(blockSpacing);

    auto *heading = new QLabel(tr("Connect to LumenFold"), this);
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * headingSize);
    headingFont.setBold(true);
    heading->setFont(headingFont);
    blocks->addWidget(heading);
    blocks->addWidget(makeExplanation());

    auto *link = new LinkButton(tr("Get your API key"), this);
    link->setToolTip(m_with.config.apiKeyURL().toDisplayString());
    connect(link, &LinkButton::clicked, this, [this] { m_with.workspace.open(m_with.config.apiKeyURL()); });
    blocks->addWidget(link, 0, Qt::AlignLeading);
    blocks->addWidget(makeKeyBlock());
    blocks->addWidget(m_keyringHint);
    blocks->addWidget(m_error);
    blocks->addWidget(makeButtonRow());
    setTabOrder(m_key, m_connect);
    setTabOrder(m_connect, link);

    connect(m_key, &QLineEdit::textChanged, this, &ApiKeySetupView::showState);
    connect(m_connect, &QPushButton::clicked, this, &ApiKeySetupView::connectAccount);
    connect(&m_with.auth, &AuthService::keyringChanged, this, &ApiKeySetupView::showKeyringHint);
    connect(&m_with.appearance, &Appearance::changed, this, &ApiKeySetupView::showColors);
    showState();
    showColors();
    showKeyringHint();
    setFocusProxy(m_key);
}

QWidget *ApiKeySetupView::makeExplanation()
{
    auto *explanation = new QLabel(tr("Paste your personal API key to save screenshots straight to your LumenFold "
                                      "assets. Capturing, copying, and saving to disk all work without it."),
                                   this);
    explanation->setWordWrap(true);
    return explanation;
}

QWidget *ApiKeySetupView::makeKeyBlock()
{
    auto *block = new QWidget(this);
    auto *rows = new QVBoxLayout(block);
    rows->setContentsMargins({});
    rows->setSpacing(labelSpacing);
    auto *label = new QLabel(tr("API key"), block);
    label->setBuddy(m_key);
    m_key->setEchoMode(QLineEdit::Password);
    m_key->setPlaceholderText(tr("Paste your key here"));
    m_key->setAccessibleName(tr("API key"));
    rows->addWidget(label);
    rows->addWidget(m_key);
    return block;
}

QWidget *ApiKeySetupView::makeButtonRow()
{
    auto *block = new QWidget(this);
    auto *row = new QHBoxLayout(block);
    row->setContentsMargins({});
    row->setSpacing(progressSpacing);
    row->addStretch();
    row->addWidget(m_progress);
    row->addWidget(m_connect);
    m_connect->setDefault(true);
    m_progress->setAccessibleName(tr("Checking the key"));
    return block;
}

void ApiKeySetupView::connectAccount()
{
    const QString key = trimmedKey();
    if (key.isEmpty() || m_isValidating) {
        return;
    }
    m_isValidating = true;
    m_error->setMessage({});
    showState();
    signIn(key);
}

QCoro::Task<> ApiKeySetupView::signIn(QString key)
{
    const QPointer self(this);
    QString failure;
    try {
        co_await m_with.auth.signIn(key);
    } catch (const AuthError &error) {
        failure = error.description();
    } catch (const std::exception &) {
        failure = tr("Something went wrong.");
    }
    if (!self) {
        co_return;
    }
    m_isValidating = false;
    showState();
    if (failure.isEmpty()) {
        m_onConnected();
    } else {
        m_error->setMessage(failure);
    }
}

QString ApiKeySetupView::trimmedKey() const
{
    return m_key->text().trimmed();
}

void ApiKeySetupView::showState()
{
    m_connect->setEnabled(!m_isValidating && !trimmedKey().isEmpty());
    m_progress->setSpinning(m_isValidating);
}

void ApiKeySetupView::showColors()
{
    m_error->setColor(palette::statusFailure.in(m_with.appearance.colorScheme()));
}

void ApiKeySetupView::showKeyringHint()
{
    m_keyringHint->setMessage(m_with.auth.hasKeyring()
                                  ? QString()
                                  : tr("This desktop has no keyring, so your key cannot be kept. Install one, for "
                                       "example GNOME Keyring (the package gnome-keyring) or KWallet, and log in "
                                       "again."));
}

} // namespace lumenfold
