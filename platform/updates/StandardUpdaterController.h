#pragma once

#include <QString>
#include <QUrl>

namespace lumenfold {

/// A version that is newer than the running one, can be run here, and comes from where updates come from.
struct AvailableUpdate {
    /// As it is written, for example "1.4.0-beta.2".
    QString version;
    /// What it is called; may be empty.
    QString title{};
    /// What is new in it, in Markdown; may be empty.
    QString notes{};
    /// Where a browser finds it. Always HTTPS.
    QUrl page{};

    friend bool operator==(const AvailableUpdate &, const AvailableUpdate &) = default;
};

/// Is told what each check found, whoever asked for it. Main thread. A check that could not be made is told to nobody.
class UpdaterDelegate {
public:
    UpdaterDelegate() = default;
    UpdaterDelegate(const UpdaterDelegate &) = delete;
    UpdaterDelegate &operator=(const UpdaterDelegate &) = delete;
    virtual ~UpdaterDelegate() = default;

    virtual void didFindValidUpdate(const AvailableUpdate &update) = 0;
    /// Also when the user has chosen to skip the one there is.
    virtual void updaterDidNotFindUpdate() = 0;
};

/// Looks for updates by itself now and then for as long as it lives, and whenever it is asked to. Main thread.
class StandardUpdaterController {
public:
    StandardUpdaterController() = default;
    StandardUpdaterController(const StandardUpdaterController &) = delete;
    StandardUpdaterController &operator=(const StandardUpdaterController &) = delete;
    virtual ~StandardUpdaterController() = default;

    /// The user asks: a window says what goes on and what was found. While that window is there, it comes to the front.
    virtual void checkForUpdates() = 0;
};

} // namespace lumenfold
