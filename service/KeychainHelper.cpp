#include "service/KeychainHelper.h"

#include <QDebug>
#include <QStringDecoder>

namespace lumenfold {
namespace {

KeychainHelper *sharedHelper = nullptr;

} // namespace

KeychainHelper::KeychainHelper(SecretStore &store) : m_store(store) {}

KeychainHelper &KeychainHelper::shared()
{
    Q_ASSERT_X(sharedHelper, "KeychainHelper::shared", "called before the composition root made it");
    return *sharedHelper;
}

void KeychainHelper::setShared(KeychainHelper *helper)
{
    sharedHelper = helper;
}

QCoro::Task<> KeychainHelper::write(QString key, QString value)
{
    const SecretKey query = baseQuery(key);
    // Both at once, so that nobody reads between them that there is nothing.
    auto removed = m_store.remove(query);
    const int status = co_await m_store.add(query, value.toUtf8());
    co_await removed;
    if (status != secretStatus::success) {
        qWarning().noquote().nospace() << "LumenFold keychain write failed: " << status;
    }
}

std::optional<QString> KeychainHelper::read(const QString &key) const
{
    const std::optional<QByteArray> data = m_store.find(baseQuery(key));
    if (!data) {
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    QString value = decoder.decode(*data);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(value));
}

void KeychainHelper::remove(const QString &key)
{
    m_store.remove(baseQuery(key));
}

SecretPresence KeychainHelper::presence(const QString &key) const
{
    return m_store.presence(baseQuery(key));
}

QCoro::Task<> KeychainHelper::unlock(QString key)
{
    co_await m_store.unlock(baseQuery(key));
}

SecretKey KeychainHelper::baseQuery(const QString &account)
{
    return {.service = service, .account = account};
}

} // namespace lumenfold
