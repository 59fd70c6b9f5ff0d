#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumenfold {

/// What goes to the editor's page with a screenshot.
struct HandOver {
    QString screenshotId{};
    std::optional<QString> apiKey{};
    std::optional<QString> templateId{};
};

/// The members of the message to the page as a JSON object, all but `src`, which is the screenshot as a data address
/// and joins them in the page: it may be too long to be sent in one piece.
[[nodiscard]] QByteArray handOverMembers(const HandOver &handOver);

} // namespace lumenfold
