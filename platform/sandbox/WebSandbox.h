#pragma once

namespace lumenfold {

/// Whether web pages can be shown behind the walls that they belong behind: processes without any rights, in namespaces
/// of their own.
enum class WebSandbox {
    available,
    /// The web engine makes no sandbox for the superuser's programs.
    superuser,
    /// The system does not let ordinary programs make user namespaces.
    unavailable,
};

/// Tries it, in a process that ends at once. Who sets QTWEBENGINE_DISABLE_SANDBOX does without it knowingly, and is
/// answered `available`; this program never sets it. Any thread.
[[nodiscard]] WebSandbox webSandbox();

} // namespace lumenfold
