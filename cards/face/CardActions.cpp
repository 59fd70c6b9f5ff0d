#include "cards/face/CardActions.h"

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "cards/PreviewModel.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/workspace/Workspace.h"
#include "service/ApiKeySetupWindow.h"
#include "service/LumenfoldService.h"
#include "service/ServiceError.h"
#include "service/TemplateSelection.h"
#include "service/http/TransportError.h"

#include <QDebug>

#include <chrono>
#include <exception>
#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto flashDuration = 1400ms;

/// How an upload ended, as far as the card is concerned.
enum class Outcome { uploaded, keyMissing, calledOff, failed };

void logUploadError(const char *description)
{
    qWarning().noquote().nospace() << "LumenFold upload error: " << description;
}

QCoro::Task<Outcome> tryUpload(LumenfoldService *service, Image image, UploadKind kind)
{
    if (service == nullptr) {
        logUploadError("there is no service to upload to");
        co_return Outcome::failed;
    }
    try {
        if (kind == UploadKind::openInLumenFold) {
            co_await service->openInLumenFold(image);
        } else {
            co_await service->save(image);
        }
        co_return Outcome::uploaded;
    } catch (const ServiceError &error) {
        if (error.kind() == ServiceError::Case::notAuthenticated) {
            co_return Outcome::keyMissing;
        }
        logUploadError(error.what());
    } catch (const TransportError &error) {
        if (error.kind() == TransportError::Kind::cancelled) {
            co_return Outcome::calledOff;
        }
        logUploadError(error.what());
    } catch (const std::exception &error) {
        logUploadError(error.what());
    }
    co_return Outcome::failed;
}

/// The card may be gone when the upload ends.
QCoro::Task<> runUpload(std::weak_ptr<PreviewModel> card, Image image, UploadKind kind, CardActions::Collaborators with)
{
    const Outcome outcome = co_await tryUpload(with.service, std::move(image), kind);
    if (const auto model = card.lock()) {
        switch (outcome) {
        case Outcome::uploaded:
            model->setStatus(PreviewModel::Uploaded{});
            break;
        case Outcome::keyMissing:
            model->setStatus(PreviewModel::Failed{CardActions::tr("API key required")});
            break;
        case Outcome::calledOff:
            model->setStatus(PreviewModel::Idle{});
            break;
        case Outcome::failed:
            model->setStatus(PreviewModel::Failed{CardActions::tr("Upload failed")});
            break;
        }
    }
    if (outcome == Outcome::keyMissing && with.apiKeySetup != nullptr) {
        with.apiKeySetup->present();
    }
}

} // namespace

CardActions::CardActions(std::shared_ptr<PreviewModel> model, const Collaborators &collaborators)
    : m_model(std::move(model)), m_with(collaborators)
{
}

void CardActions::edit() const
{
    if (m_with.config.editorLocation() == EditorLocation::browser) {
        upload(UploadKind::openInLumenFold);
    } else if (const auto callback = m_model->onEditRequested) {
        callback();
    }
}

void CardActions::save() const
{
    // A file that could not be written is in the log; the card has no room for more.
    m_with.actions.saveToDisk(m_model->image());
    finish();
}

void CardActions::copy() const
{
    m_with.actions.copyToClipboard(m_model->image());
    finish();
}

void CardActions::finish() const
{
    if (m_with.config.hideCardOnCopyOrSave()) {
        if (const auto callback = m_model->onDismiss) {
            callback();
        }
        return;
    }
    m_model->setStatus(PreviewModel::Uploaded{});
    m_with.queue.after(flashDuration, [weak = std::weak_ptr(m_model)] {
        const auto model = weak.lock();
        if (model && std::holds_alternative<PreviewModel::Uploaded>(model->status())) {
            model->setStatus(PreviewModel::Idle{});
        }
    });
}

void CardActions::upload(UploadKind kind) const
{
    m_model->setStatus(PreviewModel::Uploading{});
    runUpload(m_model, m_model->image(), kind, m_with);
}

void CardActions::open(const QUrl &uploaded) const
{
    const auto templateId = m_with.templates != nullptr ? m_with.templates->selectedId() : std::nullopt;
    m_with.workspace.open(m_with.config.studioImportURL(QString::fromLatin1(uploaded.toEncoded()), templateId));
}

} // namespace lumenfold
