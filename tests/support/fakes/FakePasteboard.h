#pragma once

#include "platform/pasteboard/Pasteboard.h"

#include <optional>
#include <vector>

namespace lumenfold::test {

/// A pasteboard in memory, with the calls that filled it.
class FakePasteboard : public Pasteboard {
public:
    enum class Call { clearContents, writeImage, setPngData };

    void clearContents() override;
    void writeImage(const Image &image) override;
    void setPngData(const QByteArray &png) override;

    /// Every call so far, in order.
    std::vector<Call> calls;
    /// The present set of contents: what was added since it was cleared.
    std::vector<Image> images;
    std::optional<QByteArray> png;
};

} // namespace lumenfold::test
