#pragma once

#include "service/HttpLumenfoldService.h"
#include "service/ServiceError.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/service/ServiceDouble.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>

namespace lumenfold::test {

/// How an operation of the service ended, once it has.
template <typename Result>
struct Ending {
    std::optional<Result> result;
    std::optional<ServiceError> serviceError;
    std::optional<TransportError> transportError;

    [[nodiscard]] bool isThere() const { return result || serviceError || transportError; }
    [[nodiscard]] QString text() const
    {
        return serviceError     ? serviceError->description()
               : transportError ? QString::fromUtf8(transportError->what())
                                : QString();
    }
};

template <typename Result>
QCoro::Task<> note(QCoro::Task<Result> task, std::shared_ptr<Ending<Result>> ending)
{
    try {
        Result result = co_await task;
        ending->result = std::move(result);
    } catch (const ServiceError &error) {
        ending->serviceError = error;
    } catch (const TransportError &error) {
        ending->transportError = error;
    }
}

/// The service's client with everything around it that decides what it says: the account, the settings, the desktop.
class ServiceTest : public ::testing::Test, protected FakeAccount {
protected:
    using Endpoint = ServiceDouble::Endpoint;
    using Way = Behaviour::Way;
    using Kind = ServiceError::Case;
    using Templates = std::vector<LumenfoldTemplate>;

    /// The user has the double's own key, and the settings lead to the double.
    ServiceTest();

    [[nodiscard]] std::shared_ptr<Ending<QUrl>> beginSave(const Image &image);
    [[nodiscard]] Ending<QUrl> save(const Image &image);
    [[nodiscard]] Ending<QUrl> save() { return save(picture()); }
    /// The result is true.
    [[nodiscard]] Ending<bool> openInLumenFold(const Image &image);
    [[nodiscard]] Ending<Templates> fetchTemplates();

    [[nodiscard]] static Image picture();

    ServiceDouble online;
    FakeWorkspace workspace;
    FakeTemplateSelection templates;
    /// The account has one of its own, because this one may go.
    std::unique_ptr<HttpClient> httpOfService = std::make_unique<HttpClient>();
    std::unique_ptr<HttpLumenfoldService> service =
        std::make_unique<HttpLumenfoldService>(HttpLumenfoldService::Collaborators{
            .http = *httpOfService, .auth = auth, .config = config, .workspace = workspace, .templates = templates});
};

} // namespace lumenfold::test
