#pragma once

#include "platform/image/Image.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QUrl>

#include <memory>

namespace lumenfold {

class ActionHandler;
class ApiKeySetupWindow;
class AppConfig;
class LumenfoldService;
class MainQueue;
class PreviewModel;
class TemplateSelection;
class Workspace;

/// What an upload is for.
enum class UploadKind { save, openInLumenFold };

/// What the buttons of one card do; the outcome shows in the model's status. Main thread.
class CardActions {
    Q_DECLARE_TR_FUNCTIONS(lumenfold::CardActions)

public:
    /// Everything must outlive the actions and the uploads that they start. What is null is not there: an upload
    /// without a service fails, a missing key is asked for by nobody, no template is chosen.
    struct Collaborators {
        const ActionHandler &actions;
        const AppConfig &config;
        MainQueue &queue;
        Workspace &workspace;
        LumenfoldService *service = nullptr;
        ApiKeySetupWindow *apiKeySetup = nullptr;
        const TemplateSelection *templates = nullptr;
    };

    CardActions(std::shared_ptr<PreviewModel> model, const Collaborators &collaborators);

    /// Hands the card to the program's own editor, or uploads it for the one in the browser, as the user has set it.
    void edit() const;
    /// The card goes away or says that it is done, as the user has set it; also when the file could not be written.
    void save() const;
    void copy() const;

    void upload(UploadKind kind) const;
    /// Opens an uploaded picture in the service's editor in the browser.
    void open(const QUrl &uploaded) const;

private:
    void finish() const;

    const std::shared_ptr<PreviewModel> m_model;
    const Collaborators m_with;
};

} // namespace lumenfold
