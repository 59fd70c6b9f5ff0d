#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace lumenfold {

/// Held by the one running instance of the program. The system lets go of it when the process ends, however it ends.
class InstanceLock {
public:
    enum class Failure {
        /// Another process holds it.
        taken,
        /// The file cannot be made or is somebody else's.
        unavailable,
    };

    /// Does not wait.
    [[nodiscard]] static tl::expected<InstanceLock, Failure> acquire(const QString &path);

    /// A file of the user's own, for this session: in $XDG_RUNTIME_DIR, or where that is not set, in the folder for
    /// temporary files under a name with the user's number.
    [[nodiscard]] static QString standardPath();

    InstanceLock(InstanceLock &&other) noexcept;
    InstanceLock &operator=(InstanceLock &&other) noexcept;
    ~InstanceLock();

private:
    explicit InstanceLock(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace lumenfold
