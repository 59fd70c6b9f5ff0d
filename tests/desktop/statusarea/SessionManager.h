#pragma once

#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <vector>

#include <X11/SM/SMlib.h>

namespace lumenfold::test {

/// An X session manager (XSMP), as desktops have one to end their session: it tells its clients to save themselves, and
/// then to go. It works while the test waits for something. One at a time.
class SessionManager : public QObject {
    Q_OBJECT

public:
    SessionManager();
    ~SessionManager() override;

    /// What programs find in SESSION_MANAGER.
    [[nodiscard]] QString address() const { return m_address; }
    [[nodiscard]] qsizetype clients() const { return m_clients.size(); }

    /// The session ends: every client is to save itself. Returns when all say that they have.
    void saveEverybody();
    /// And then it is over.
    void endSession();

private:
    void accept(IceListenObj listener);
    static Status newClient(SmsConn client, SmPointer self, unsigned long *mask, SmsCallbacks *callbacks,
                            char **failure);

    QString m_address;
    int m_listenerCount = 0;
    IceListenObj *m_listeners = nullptr;
    std::vector<std::unique_ptr<QSocketNotifier>> m_notifiers;
    QList<SmsConn> m_clients;
    QList<SmsConn> m_saved;
};

} // namespace lumenfold::test
