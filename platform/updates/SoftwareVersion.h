#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <compare>
#include <optional>

namespace lumenfold {

/// A version of a program as people write it: numbers with dots between them, perhaps "-" and the name of a preliminary
/// version, perhaps "+" and the name of a build: "1.4", "v1.4.0", "2.0.0-beta.2", "1.4.0+debian1".
///
/// Ordered as one expects: by the numbers, of which any count may be there and missing ones are zero; a preliminary
/// version comes before the version itself, and of two such the parts of their names decide, numbers by value and
/// before words. The name of the build does not count.
class SoftwareVersion {
public:
    /// Nothing for any text that is no version, and for one that is longer than anybody's.
    [[nodiscard]] static std::optional<SoftwareVersion> parse(QStringView text);

    [[nodiscard]] bool isPreliminary() const { return !m_preliminary.isEmpty(); }

    friend std::weak_ordering operator<=>(const SoftwareVersion &one, const SoftwareVersion &other);
    friend bool operator==(const SoftwareVersion &one, const SoftwareVersion &other)
    {
        return (one <=> other) == std::weak_ordering::equivalent;
    }

private:
    /// Without zeros at their beginning, so that a longer one is a larger one: they may be larger than any integer.
    QStringList m_numbers;
    QStringList m_preliminary;
};

} // namespace lumenfold
