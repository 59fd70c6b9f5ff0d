#pragma once

#include "platform/screens/Screens.h"

#include <QString>

#include <vector>

namespace lumenfold {

/// What is known about the monitor behind a screen. Anything may be empty.
struct DisplayIdentity {
    /// The name of the output or monitor, such as "HDMI-1".
    QString name;
    QString manufacturer;
    QString model;
    QString serialNumber;

    friend bool operator==(const DisplayIdentity &, const DisplayIdentity &) = default;
};

/// One id per screen, in the same order: the same for the same monitor in every run, never 0, all distinct. A monitor
/// that has a serial number keeps its id on whichever output it is; others are told apart by their output. Screens that
/// cannot be told apart at all (two of one description) are numbered in order.
[[nodiscard]] std::vector<DisplayID> displayIDsFor(const std::vector<DisplayIdentity> &screens);

} // namespace lumenfold
