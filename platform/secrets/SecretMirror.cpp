#include "platform/secrets/SecretMirror.h"

#include <algorithm>
#include <ranges>

namespace lumenfold {

std::optional<QByteArray> SecretMirror::find(const QString &account) const
{
    if (const Expected *operation = expected(account)) {
        return operation->data;
    }
    return m_items.value(account);
}

SecretPresence SecretMirror::presence(const QString &account) const
{
    if (const Expected *operation = expected(account)) {
        return operation->data ? SecretPresence::present : SecretPresence::absent;
    }
    const auto found = m_items.constFind(account);
    if (found != m_items.cend()) {
        return *found ? SecretPresence::present : SecretPresence::locked;
    }
    return m_hasAnswered && !m_mayHideItems ? SecretPresence::absent : SecretPresence::unknown;
}

void SecretMirror::expect(Operation operation, const QString &account, const std::optional<QByteArray> &data)
{
    m_expected.push_back({operation, account, data});
}

void SecretMirror::settle(Operation operation)
{
    std::erase_if(m_expected, [operation](const Expected &each) { return each.operation == operation; });
}

void SecretMirror::take(const KeyringContents &contents)
{
    m_hasAnswered = true;
    m_isAvailable = true;
    m_mayHideItems = contents.mayHideItems;
    // What was there before a keyring was locked is still there when it does not tell any more.
    const QStringList hidden = contents.mayHideItems ? m_items.keys() : QStringList();
    m_items.clear();
    for (const QString &account : hidden) {
        m_items.insert(account, std::nullopt);
    }
    for (const KeyringContents::Item &item : contents.items) {
        // Of several items of one name, one that can be read.
        std::optional<QByteArray> &known = m_items[item.account];
        if (!known) {
            known = item.data;
        }
    }
}

void SecretMirror::fail(int status)
{
    if (status == secretStatus::notAvailable) {
        m_hasAnswered = true;
        m_isAvailable = false;
        m_mayHideItems = false;
        m_items.clear();
    }
}

void SecretMirror::gone()
{
    for (std::optional<QByteArray> &data : m_items) {
        data.reset();
    }
}

bool SecretMirror::looksLike(const SecretMirror &other) const
{
    QStringList accounts = m_items.keys() + other.m_items.keys();
    for (const SecretMirror *mirror : {this, &other}) {
        for (const Expected &each : mirror->m_expected) {
            accounts.append(each.account);
        }
    }
    const QString anyOther; // No item has an empty name that matters.
    accounts.append(anyOther);
    return m_isAvailable == other.m_isAvailable && std::ranges::all_of(accounts, [&](const QString &account) {
               return presence(account) == other.presence(account) && find(account) == other.find(account);
           });
}

const SecretMirror::Expected *SecretMirror::expected(const QString &account) const
{
    const auto latest = std::ranges::find(m_expected.rbegin(), m_expected.rend(), account, &Expected::account);
    return latest == m_expected.rend() ? nullptr : &*latest;
}

} // namespace lumenfold
