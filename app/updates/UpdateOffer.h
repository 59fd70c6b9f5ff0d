#pragma once

#include "platform/updates/UpdateUserDriver.h"

#include <QWidget>

namespace lumenfold {

/// A version that the user may have: what is new in it, and the three things to do about it.
class UpdateOffer : public QWidget {
    Q_OBJECT

public:
    /// `runningVersion`: the one that the user has.
    UpdateOffer(const AvailableUpdate &update, const QString &runningVersion, QWidget *parent = nullptr);

Q_SIGNALS:
    void chosen(UpdateChoice choice);
    /// A link in the notes.
    void pageChosen(const QUrl &page);
};

} // namespace lumenfold
