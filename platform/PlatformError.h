#pragma once

#include <QString>

namespace lumenfold {

/// What a platform service says when it fails: which part of the platform (`domain`), its own number for the failure
/// (`code`), and a sentence for the log. Never shown to the user as it is.
struct PlatformError {
    QString domain;
    int code = 0;
    QString description;

    friend bool operator==(const PlatformError &, const PlatformError &) = default;
};

} // namespace lumenfold
