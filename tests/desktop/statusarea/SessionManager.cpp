#include "tests/desktop/statusarea/SessionManager.h"

#include "tests/support/desktop/Wait.h"

#include <QUuid>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace lumenfold::test {
namespace {

SessionManager *theManager = nullptr;

int anybodyMayConnect(char *)
{
    return True;
}

} // namespace

SessionManager::SessionManager()
{
    theManager = this;
    std::array<char, 256> error{};
    static bool isInitialized = false;
    if (!isInitialized &&
        SmsInitialize("LumenFold tests", "1", newClient, nullptr, anybodyMayConnect, error.size(), error.data()) == 0) {
        throw std::runtime_error(error.data());
    }
    isInitialized = true;
    if (IceListenForConnections(&m_listenerCount, &m_listeners, error.size(), error.data()) == 0) {
        throw std::runtime_error(error.data());
    }
    for (int index = 0; index < m_listenerCount; ++index) {
        IceListenObj listener = m_listeners[index];
        IceSetHostBasedAuthProc(listener, anybodyMayConnect);
        auto notifier =
            std::make_unique<QSocketNotifier>(IceGetListenConnectionNumber(listener), QSocketNotifier::Read);
        connect(notifier.get(), &QSocketNotifier::activated, this, [this, listener] { accept(listener); });
        m_notifiers.push_back(std::move(notifier));
        char *name = IceGetListenConnectionString(listener);
        // Only the local one: containers often have no network.
        if (std::strncmp(name, "local/", 6) == 0) {
            m_address = QString::fromLocal8Bit(name);
        }
        std::free(name);
    }
}

SessionManager::~SessionManager()
{
    m_notifiers.clear();
    IceFreeListenObjs(m_listenerCount, m_listeners);
    theManager = nullptr;
}

void SessionManager::saveEverybody()
{
    m_saved.clear();
    for (SmsConn client : m_clients) {
        constexpr Bool isShutdown = True;
        constexpr Bool isFast = False;
        SmsSaveYourself(client, SmSaveBoth, isShutdown, SmInteractStyleNone, isFast);
        IceFlush(SmsGetIceConnection(client));
    }
    waitUntil("the clients to save themselves", [this] { return m_saved.size() == m_clients.size(); });
    for (SmsConn client : m_clients) {
        SmsSaveComplete(client);
        IceFlush(SmsGetIceConnection(client));
    }
}

void SessionManager::endSession()
{
    for (SmsConn client : m_clients) {
        SmsDie(client);
        IceFlush(SmsGetIceConnection(client));
    }
}

void SessionManager::accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    IceConn connection = IceAcceptConnection(listener, &status);
    if (connection == nullptr) {
        return;
    }
    auto notifier = std::make_unique<QSocketNotifier>(IceConnectionNumber(connection), QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [connection, reader = notifier.get()] {
        const IceProcessMessagesStatus outcome = IceProcessMessages(connection, nullptr, nullptr);
        if (outcome != IceProcessMessagesSuccess) {
            reader->setEnabled(false);
        }
        if (outcome == IceProcessMessagesIOError) {
            IceCloseConnection(connection);
        }
    });
    m_notifiers.push_back(std::move(notifier));
}

Status SessionManager::newClient(SmsConn, SmPointer, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client.callback = [](SmsConn connection, SmPointer, char *previous) -> Status {
        std::free(previous);
        char *id = strdup(QUuid::createUuid().toByteArray().constData());
        SmsRegisterClientReply(connection, id);
        std::free(id);
        theManager->m_clients.append(connection);
        // As the protocol wants it: a new client saves itself once.
        SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
        return 1;
    };
    callbacks->interact_request.callback = [](SmsConn, SmPointer, int) {};
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    callbacks->save_yourself_phase2_request.callback = [](SmsConn connection, SmPointer) {
        SmsSaveYourselfPhase2(connection);
    };
    callbacks->save_yourself_done.callback = [](SmsConn connection, SmPointer, Bool) {
        theManager->m_saved.append(connection);
    };
    callbacks->close_connection.callback = [](SmsConn connection, SmPointer, int count, char **reasons) {
        SmFreeReasons(count, reasons);
        if (theManager != nullptr) {
            theManager->m_clients.removeAll(connection);
        }
        IceConn transport = SmsGetIceConnection(connection);
        SmsCleanUp(connection);
        IceSetShutdownNegotiation(transport, False);
        IceCloseConnection(transport);
    };
    callbacks->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp **properties) {
        for (int index = 0; index < count; ++index) {
            SmFreeProperty(properties[index]);
        }
        std::free(properties);
    };
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int count, char **names) {
        for (int index = 0; index < count; ++index) {
            std::free(names[index]);
        }
        std::free(names);
    };
    callbacks->get_properties.callback = [](SmsConn connection, SmPointer) {
        SmsReturnProperties(connection, 0, nullptr);
    };
    return 1;
}

} // namespace lumenfold::test
