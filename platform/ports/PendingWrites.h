#pragma once

#include "foundation/plist/Value.h"

#include <QHash>

#include <optional>

namespace tarnwell::ports {

/// The writes to one domain that wait to be stored, each with what the writer knew of its key.
class PendingWrites
{
public:
    bool isEmpty() const { return m_writes.isEmpty(); }

    /// The value that a key is to have, null for a removal; nothing when no write waits.
    std::optional<plist::Value> value(const QString &key) const;

    /// Notes a write. The writer made the value from the one seen, which is nothing when the stored
    /// domain could not be read.
    void note(const QString &key, const plist::Value &value,
              const std::optional<plist::Value> &seen);

    /// Whether a stored domain has it all already.
    bool areIn(const plist::Dictionary &stored) const;

    /// Whether a write was noted since the last failed().
    bool hasNew() const;

    /// Gives up the writes of keys that another process stored meanwhile, and returns whether there
    /// were any: those of collections, because they would take away what it added, and those that
    /// could not be stored at once, because what it stored is newer. Of single values that nothing
    /// has delayed, the last one wins.
    bool giveUpOvertaken(const plist::Dictionary &stored);

    /// A stored domain with the writes in it.
    plist::Dictionary appliedTo(plist::Dictionary stored) const;

    /// Notes that the writes could not be stored, or that they were.
    void failed();
    void stored();

    /// Whether a write that could not be stored at first was given up later; until the next write.
    bool areLost() const { return m_areLost; }

private:
    struct Write
    {
        plist::Value value;
        std::optional<plist::Value> seen;
        bool isNew = true;
        bool hasFailed = false; ///< it, or an earlier one of the key that it was made from
    };

    static bool isOvertaken(const Write &write, const plist::Value &stored);

    QHash<QString, Write> m_writes;
    bool m_areLost = false;
};

} // namespace tarnwell::ports
