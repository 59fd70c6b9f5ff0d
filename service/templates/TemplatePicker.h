#pragma once

#include "platform/notifications/NotificationCenter.h"
#include "service/templates/TemplateList.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class ApiKeySetupWindow;
class LumenfoldService;
class TemplateStore;

/// What the template picker knows and does; TemplatePickerView is how it looks. Main thread.
class TemplatePicker : public QObject {
    Q_OBJECT

public:
    /// Everything must outlive the picker.
    struct Collaborators {
        LumenfoldService &service;
        std::function<bool()> isSignedIn;
        TemplateStore &store;
        NotificationCenter &notifications;
        ApiKeySetupWindow &apiKeySetup;
    };

    /// What there is to see below the search field. Whatever comes first here goes before the rest.
    enum class Content { notConnected, loading, error, noTemplates, noMatch, grid };

    explicit TemplatePicker(const Collaborators &collaborators);
    ~TemplatePicker() override;

    /// The picker is seen from now on, and fetches the templates; or is not seen any more. It also fetches them when
    /// the user signs in while it is seen.
    void setShown(bool shown);

    /// Fetches the templates, if the user is signed in. Only what the latest call brings is shown. Until then, and when
    /// it fails, the templates stay.
    void load();

    [[nodiscard]] Content content() const;
    /// The text that is shown instead of the grid; empty with the grid.
    [[nodiscard]] QString message() const;

    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] const std::optional<QString> &errorMessage() const { return m_errorMessage; }
    /// The current default, as the store says.
    [[nodiscard]] const std::optional<QString> &selectedId() const { return m_selectedId; }
    [[nodiscard]] QString subtitle() const;

    [[nodiscard]] const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &text);

    /// The templates to show, in their order.
    [[nodiscard]] std::size_t displayedCount() const { return m_displayed.size(); }
    [[nodiscard]] const LumenfoldTemplate &displayedAt(std::size_t row) const;
    /// Where the template stands among those; nothing when it is not there.
    [[nodiscard]] std::optional<std::size_t> rowOf(const QString &id) const;

    /// A click on a template: it becomes the default, or is it no longer.
    void toggle(const QString &id);
    /// No default any more.
    void clear();
    /// Opens the dialog that asks for the API key.
    void connectAccount();

Q_SIGNALS:
    /// The displayed templates, or which of them is the selected one; `changed` follows.
    void displayedChanged();
    /// The content or the header.
    void changed();
    /// A fetch begins: what could not be had before may be there now.
    void reloading();

private:
    QCoro::Task<> fetch();
    void accountChanged();
    void selectionChanged();
    void updateDisplayed();

    const Collaborators m_with;
    TemplateList m_templates;
    std::vector<std::size_t> m_displayed;
    QString m_searchText;
    std::optional<QString> m_selectedId;
    std::optional<QString> m_errorMessage;
    bool m_isShown = false;
    bool m_isLoading = false;
    /// As it was known last.
    bool m_wasSignedIn;
    /// Counts the fetches; what an earlier one brings is not wanted any more.
    int m_fetch = 0;
    std::unique_ptr<NotificationCenter::Observation> m_selectionObservation;
    std::unique_ptr<NotificationCenter::Observation> m_accountObservation;
};

} // namespace lumenfold
