#include "service/templates/TemplatePicker.h"

#include "service/ApiKeySetupWindow.h"
#include "service/AuthService.h"
#include "service/LumenfoldService.h"
#include "service/ServiceError.h"
#include "service/templates/TemplateStore.h"

#include <QPointer>

#include <exception>
#include <utility>

namespace lumenfold {

TemplatePicker::TemplatePicker(const Collaborators &collaborators)
    : m_with(collaborators), m_selectedId(m_with.store.selectedId()), m_wasSignedIn(m_with.isSignedIn())
{
    m_selectionObservation = m_with.notifications.observe(TemplateStore::selectionChangedNotification,
                                                          [this](const Notification &) { selectionChanged(); });
    m_accountObservation = m_with.notifications.observe(AuthService::authStateChangedNotification,
                                                        [this](const Notification &) { accountChanged(); });
}

TemplatePicker::~TemplatePicker() = default;

void TemplatePicker::setShown(bool shown)
{
    if (shown && !m_isShown) {
        load();
    }
    m_isShown = shown;
}

void TemplatePicker::load()
{
    if (!m_with.isSignedIn()) {
        return;
    }
    m_isLoading = true;
    m_errorMessage.reset();
    Q_EMIT reloading();
    Q_EMIT changed();
    fetch();
}

QCoro::Task<> TemplatePicker::fetch()
{
    const QPointer<TemplatePicker> self(this);
    const int fetch = ++m_fetch;
    std::optional<std::vector<LumenfoldTemplate>> templates;
    QString message;
    try {
        templates = co_await m_with.service.fetchTemplates();
    } catch (const ServiceError &error) {
        message = error.description();
    } catch (const std::exception &) {
        message = tr("Couldn't load templates.");
    }
    if (!self || fetch != m_fetch) {
        co_return;
    }
    m_isLoading = false;
    if (templates) {
        m_templates = TemplateList(std::move(*templates));
        updateDisplayed();
    } else {
        m_errorMessage = message;
        Q_EMIT changed();
    }
}

TemplatePicker::Content TemplatePicker::content() const
{
    if (!m_with.isSignedIn()) {
        return Content::notConnected;
    }
    if (m_isLoading) {
        return Content::loading;
    }
    if (m_errorMessage) {
        return Content::error;
    }
    if (m_templates.isEmpty()) {
        return Content::noTemplates;
    }
    return m_displayed.empty() ? Content::noMatch : Content::grid;
}

QString TemplatePicker::message() const
{
    switch (content()) {
    case Content::notConnected:
        return tr("Connect with your API key to load templates.");
    case Content::loading:
        return tr("Loading templates…");
    case Content::error:
        return m_errorMessage.value_or(QString());
    case Content::noTemplates:
        return tr("No templates yet. Create one in the LumenFold editor.");
    case Content::noMatch:
        return tr("No templates match “%1”").arg(searchQuery(m_searchText));
    case Content::grid:
        break;
    }
    return {};
}

QString TemplatePicker::subtitle() const
{
    return m_selectedId ? tr("Applied to every screenshot you open in LumenFold.")
                        : tr("Screenshots open in the editor with no template.");
}

void TemplatePicker::setSearchText(const QString &text)
{
    if (text != m_searchText) {
        m_searchText = text;
        updateDisplayed();
    }
}

const LumenfoldTemplate &TemplatePicker::displayedAt(std::size_t row) const
{
    return m_templates.at(m_displayed.at(row));
}

std::optional<std::size_t> TemplatePicker::rowOf(const QString &id) const
{
    for (std::size_t row = 0; row < m_displayed.size(); ++row) {
        if (displayedAt(row).id == id) {
            return row;
        }
    }
    return std::nullopt;
}

void TemplatePicker::toggle(const QString &id)
{
    if (m_selectedId == id) {
        m_with.store.clear();
    } else if (const auto row = rowOf(id)) {
        m_with.store.select(displayedAt(*row));
    }
}

void TemplatePicker::clear()
{
    m_with.store.clear();
}

void TemplatePicker::connectAccount()
{
    m_with.apiKeySetup.present();
}

void TemplatePicker::accountChanged()
{
    const bool isSignedIn = m_with.isSignedIn();
    const bool wasSignedIn = std::exchange(m_wasSignedIn, isSignedIn);
    if (isSignedIn && !wasSignedIn && m_isShown) {
        load();
    } else {
        Q_EMIT changed();
    }
}

void TemplatePicker::selectionChanged()
{
    m_selectedId = m_with.store.selectedId();
    updateDisplayed();
}

void TemplatePicker::updateDisplayed()
{
    m_displayed = m_templates.displayed(m_searchText, m_selectedId);
    Q_EMIT displayedChanged();
    Q_EMIT changed();
}

} // namespace lumenfold
