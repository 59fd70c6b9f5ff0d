#pragma once

#include "platform/updates/StandardUpdaterController.h"

#include <QStringList>

namespace lumenfold::test {

/// Counts what it is asked; the test says what was found, through the delegate.
class FakeUpdater : public StandardUpdaterController {
public:
    explicit FakeUpdater(UpdaterDelegate &toTell) : delegate(toTell) {}

    void checkForUpdates() override { ++checks; }

    UpdaterDelegate &delegate;
    int checks = 0;
};

/// Keeps what it is told.
class FakeUpdaterDelegate : public UpdaterDelegate {
public:
    void didFindValidUpdate(const AvailableUpdate &update) override { told.append(update.version); }
    void updaterDidNotFindUpdate() override { told.append(QStringLiteral("none")); }

    QStringList told;
};

} // namespace lumenfold::test
