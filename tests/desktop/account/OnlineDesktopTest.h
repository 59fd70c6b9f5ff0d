#pragma once

#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/service/ServiceDouble.h"

#include <QTemporaryDir>

namespace lumenfold::test {

/// A desktop whose program talks to the double of the service and edits in the browser, which writes down what it is
/// to open.
class OnlineDesktopTest : public DesktopTest {
protected:
    using Endpoint = ServiceDouble::Endpoint;

    Desktop &prepareOnline(DesktopOptions options, const QByteArray &moreSettings = {});

    /// Captures, and presses Edit on the card, on a screen that is `cardFriendlyScreen`.
    static void editACapture(Desktop &desktop);

    /// What the browser was to open, the earliest first.
    [[nodiscard]] QByteArrayList opened() const;

    ServiceDouble service;

private:
    QTemporaryDir m_programs;
    const QString m_opened = m_programs.filePath(QStringLiteral("opened"));
};

} // namespace lumenfold::test
