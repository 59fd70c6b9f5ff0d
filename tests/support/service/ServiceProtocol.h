#pragma once

#include "tests/support/service/Exchange.h"

#include <QMap>
#include <QUrl>

namespace lumenfold::test {

/// What the double of the service has, and what it answers as long as nobody tells it to misbehave.
class ServiceProtocol {
public:
    enum class Endpoint {
        user,
        signedUrl,
        storage,
        templates,
        preview,
        /// What a browser shows: "/studio", "/dashboard/account", the editor ("/integration/electron") and whatever
        /// else there is no other name for.
        page,
    };

    /// The key that it takes; every other one is refused with 401.
    QByteArray apiKey = "demo-key";
    QByteArray email = "ada@lumenfold.example";
    /// So many, each with a preview picture.
    int templateCount = 12;
    /// Pictures as they were uploaded, under the path from which they can be had.
    QMap<QByteArray, QByteArray> stored;
    /// Pages of a test's own (HTML), by their path; they go before what is there otherwise.
    QMap<QByteArray, QByteArray> pages;

    [[nodiscard]] static Endpoint endpointOf(const ReceivedRequest &request);

    /// `base`: where clients reach it.
    [[nodiscard]] ServiceReply answerTo(const ReceivedRequest &request, const QByteArray &base);

private:
    [[nodiscard]] bool isAuthorized(const ReceivedRequest &request) const;
    [[nodiscard]] ServiceReply user() const;
    [[nodiscard]] static ServiceReply signedUrl(const ReceivedRequest &request, const QByteArray &base);
    [[nodiscard]] ServiceReply storage(const ReceivedRequest &request);
    [[nodiscard]] ServiceReply templates(const QByteArray &base) const;
    [[nodiscard]] static ServiceReply preview(const ReceivedRequest &request);
    [[nodiscard]] ServiceReply page(const ReceivedRequest &request) const;
};

} // namespace lumenfold::test
