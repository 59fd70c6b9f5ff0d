#pragma once

#include "service/http/HttpClient.h"
#include "tests/support/service/ServiceDouble.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>

namespace lumenfold::test {

/// How a request ended, once it has.
struct Ended {
    std::optional<HttpAnswer> answer;
    std::optional<TransportError> error;
    /// Whether it ended on the thread that asked.
    bool onSameThread = false;

    [[nodiscard]] bool isThere() const { return answer || error; }
};

/// A client and the double of the service, over HTTP.
class HttpClientTest : public ::testing::Test {
protected:
    using Endpoint = ServiceDouble::Endpoint;
    using Way = Behaviour::Way;
    using Kind = TransportError::Kind;

    /// Begins a request; its ending appears in the result.
    [[nodiscard]] std::shared_ptr<Ended> begin(const HttpRequest &request, QObject *owner = nullptr) const;
    /// Sends it and waits for its ending.
    [[nodiscard]] Ended send(const HttpRequest &request) const;
    /// The same for one that must not get an answer.
    [[nodiscard]] Kind failureOf(const HttpRequest &request) const;

    [[nodiscard]] HttpRequest get(const QString &path) const;
    /// A picture for the storage.
    [[nodiscard]] HttpRequest put(const QByteArray &body) const;

    ServiceDouble service;
    std::unique_ptr<HttpClient> client = std::make_unique<HttpClient>();
};

} // namespace lumenfold::test
