#pragma once

#include "platform/image/Image.h"
#include "service/LumenfoldTemplate.h"

#include <QCoroTask>
#include <QUrl>

#include <vector>

namespace lumenfold {

/// The online service as the cards and the template picker know it. Main thread. Each operation throws ServiceError, or
/// TransportError.
class LumenfoldService {
public:
    LumenfoldService() = default;
    LumenfoldService(const LumenfoldService &) = delete;
    LumenfoldService &operator=(const LumenfoldService &) = delete;
    virtual ~LumenfoldService() = default;

    /// Uploads the image as a PNG. The address of the uploaded file.
    [[nodiscard]] virtual QCoro::Task<QUrl> save(Image image) = 0;

    /// Uploads the image and opens it in the service's editor in the user's browser.
    [[nodiscard]] virtual QCoro::Task<> openInLumenFold(Image image) = 0;

    /// The user's templates, in the order in which the service sent them.
    [[nodiscard]] virtual QCoro::Task<std::vector<LumenfoldTemplate>> fetchTemplates() = 0;
};

} // namespace lumenfold
