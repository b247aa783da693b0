#include "ports/PendingWrites.h"

#include <algorithm>

namespace tarnwell::ports {

namespace {

bool isSame(const plist::Value &a, const plist::Value &b)
{
    // Equality takes 1 for 1.0; a file that holds the one does not hold the other.
    return a.type() == b.type() && a == b;
}

bool isCollection(const plist::Value &value)
{
    return value.isArray() || value.isDictionary();
}

} // namespace

std::optional<plist::Value> PendingWrites::value(const QString &key) const
{
    const auto write = m_writes.constFind(key);
    return write == m_writes.cend() ? std::nullopt : std::optional(write->value);
}

void PendingWrites::note(const QString &key, const plist::Value &value,
                         const std::optional<plist::Value> &seen)
{
    if (const auto earlier = m_writes.find(key); earlier != m_writes.end()) {
        earlier->value = value; // made from the earlier one, and so from what that was made from
        earlier->isNew = true;
    } else {
        m_writes.insert(key, {value, seen});
    }
    m_areLost = false;
}

bool PendingWrites::hasNew() const
{
    return std::any_of(m_writes.cbegin(), m_writes.cend(),
                       [](const Write &write) { return write.isNew; });
}

bool PendingWrites::areIn(const plist::Dictionary &stored) const
{
    for (auto it = m_writes.cbegin(); it != m_writes.cend(); ++it) {
        if (!isSame(stored.value(it.key()), it->value))
            return false;
    }
    return true;
}

bool PendingWrites::isOvertaken(const Write &write, const plist::Value &stored)
{
    const bool wasDelayed = write.hasFailed && !write.isNew;
    if (!wasDelayed && !isCollection(stored) && !isCollection(write.value))
        return false;
    if (isSame(stored, write.value))
        return false;
    return write.seen ? !isSame(stored, *write.seen) : !stored.isNull();
}

bool PendingWrites::giveUpOvertaken(const plist::Dictionary &stored)
{
    return m_writes.removeIf([this, &stored](const auto &it) {
        const Write &write = it.value();
        const bool isGivenUp = isOvertaken(write, stored.value(it.key()));
        m_areLost = m_areLost || (isGivenUp && write.hasFailed);
        return isGivenUp;
    }) > 0;
}

plist::Dictionary PendingWrites::appliedTo(plist::Dictionary stored) const
{
    for (auto it = m_writes.cbegin(); it != m_writes.cend(); ++it)
        stored.insert(it.key(), it->value);
    return stored;
}

void PendingWrites::failed()
{
    for (Write &write : m_writes) {
        write.isNew = false;
        write.hasFailed = true;
    }
}

void PendingWrites::stored()
{
    m_writes.clear();
}

} // namespace tarnwell::ports
