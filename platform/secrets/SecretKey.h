#pragma once

#include <QString>

#include <compare>

namespace lumenfold {

/// How an operation on the secret store ended (macOS numbering).
namespace secretStatus {
inline constexpr int success = 0;
/// The user was asked to unlock the keyring and would not.
inline constexpr int userCanceled = -128;
/// The keyring failed in a way of its own.
inline constexpr int internalComponent = -2070;
/// There is no keyring.
inline constexpr int notAvailable = -25291;
inline constexpr int duplicateItem = -25299;
inline constexpr int itemNotFound = -25300;
/// The keyring does not answer.
inline constexpr int serviceNotAvailable = -67585;
} // namespace secretStatus

/// Identifies a generic password. Nothing else of an item counts.
struct SecretKey {
    QString service;
    QString account;

    friend std::weak_ordering operator<=>(const SecretKey &, const SecretKey &) = default;
    friend bool operator==(const SecretKey &, const SecretKey &) = default;
};

} // namespace lumenfold
