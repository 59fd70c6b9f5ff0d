#pragma once

#include <QString>
#include <QUrl>

/// Which pages the editor's window trusts: those of the origin of the editor's base address, and no others. Hosts are
/// compared as they are sent (ASCII), and every comparison is exact.
namespace lumenfold {

/// Where a document comes from, as the web engine says.
struct SecurityOrigin {
    QString protocol{};
    QString host{};
    /// 0: the protocol's own.
    int port = 0;

    friend bool operator==(const SecurityOrigin &, const SecurityOrigin &) = default;
};

/// Reads an origin as pages see it ("https://www.example.org:8443"). What is none, "null" among it, has no protocol and
/// no host, and so nobody trusts it.
[[nodiscard]] SecurityOrigin readSecurityOrigin(const QString &serialized);

/// The origin of the base address as pages see it; with a port only if the address names one. Empty if there is none.
[[nodiscard]] QString editorOrigin(const QUrl &base);

[[nodiscard]] bool isTrustedOrigin(const SecurityOrigin &origin, const QUrl &base);
[[nodiscard]] bool isTrustedAddress(const QUrl &address, const QUrl &base);

} // namespace lumenfold
