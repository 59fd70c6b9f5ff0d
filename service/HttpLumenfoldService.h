#pragma once

#include "service/BackgroundWork.h"
#include "service/LumenfoldService.h"

#include <QByteArray>

namespace lumenfold {

class AppConfig;
class AuthService;
class HttpClient;
class TemplateSelection;
class Workspace;
struct HttpAnswer;

/// The online service over HTTP. Keeps nothing: every operation asks for the key and the addresses anew, and any number
/// of them may go on at once. Nothing is tried again.
///
/// Operations throw ServiceError or TransportError. Those that go on when this object or the client goes end as
/// `cancelled`.
class HttpLumenfoldService : public LumenfoldService {
public:
    /// Everything must outlive the service.
    struct Collaborators {
        HttpClient &http;
        AuthService &auth;
        const AppConfig &config;
        Workspace &workspace;
        const TemplateSelection &templates;
    };

    explicit HttpLumenfoldService(const Collaborators &collaborators);

    [[nodiscard]] QCoro::Task<QUrl> save(Image image) override;
    [[nodiscard]] QCoro::Task<> openInLumenFold(Image image) override;
    [[nodiscard]] QCoro::Task<std::vector<LumenfoldTemplate>> fetchTemplates() override;

private:
    /// The stored key, as bytes that can go out; throws `notAuthenticated` when there is none.
    [[nodiscard]] QCoro::Task<QByteArray> apiKey();
    [[nodiscard]] QCoro::Task<QUrl> requestSignedUrl(QString fileName, QByteArray apiKey);
    [[nodiscard]] QCoro::Task<> put(QByteArray png, QUrl signedUrl);
    /// Throws what the answer of the service means, if it is not a success. Signs out when the key is refused.
    void validate(const HttpAnswer &answer, const QByteArray &apiKey);

    const Collaborators m_with;
    BackgroundWork m_background;
};

} // namespace lumenfold
