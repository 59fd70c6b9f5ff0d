#pragma once

#include <memory>

namespace lumenfold {

class AppDelegate;
class PlatformServices;
class Workspace;

/// Builds the program out of its parts: every long-lived object is made here or in a factory that is handed out here,
/// and the `shared()` instances are set here. The one place that knows which class stands behind which interface.
class CompositionRoot {
public:
    /// Needs the toolkit's application object, which must outlive this.
    explicit CompositionRoot(std::unique_ptr<PlatformServices> services);
    CompositionRoot(const CompositionRoot &) = delete;
    CompositionRoot &operator=(const CompositionRoot &) = delete;
    ~CompositionRoot();

    [[nodiscard]] AppDelegate &appDelegate();
    [[nodiscard]] Workspace &workspace();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace lumenfold
