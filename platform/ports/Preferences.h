#pragma once

#include "foundation/plist/Value.h"

#include <QHash>
#include <QString>

#include <functional>
#include <optional>

namespace tarnwell::ports {

/// The store of per-user, per-domain settings that this process shares with others.
///
/// Reads answer from what the process last saw; writes stay pending, key by key, until
/// appSynchronize() merges them into the stored domain. Main thread only, which is never kept
/// waiting for another process for long.
class Preferences
{
public:
    virtual ~Preferences() = default;

    /// The value of a key, pending writes included; null when there is none.
    virtual plist::Value copyAppValue(const QString &key, const QString &domain) const = 0;

    /// Notes a write. A null value removes the key.
    virtual void setAppValue(const QString &key, const plist::Value &value,
                             const QString &domain) = 0;

    /// Takes up what other processes stored, and stores the pending writes. Without a write since
    /// the last time it stores nothing: those that failed then wait for appStorePending().
    ///
    /// Costs one stat() when nothing is pending and the file is unchanged. Returns false when the
    /// domain could not be stored, and then the writes stay pending and the stored file is as it
    /// was; or when a write was given up, because another process had stored the key since this one
    /// read it, and then copyAppValue() gives that process's value. Given up are arrays and
    /// dictionaries, and of the writes that could not be stored at once all.
    virtual bool appSynchronize(const QString &domain) = 0;

    /// Does what appSynchronize() does, and tries those writes again that could not be stored.
    virtual bool appStorePending(const QString &domain) = 0;

    /// Changes a value that other processes change, too: takes up what is stored, and stores what
    /// `change` makes of it; once more, from the newer value, if another process was faster. Stores
    /// nothing when `change` returns nothing. Returns as appSynchronize() does.
    using Change = std::function<std::optional<plist::Value>(const plist::Value &present)>;
    bool updateAppValue(const QString &key, const QString &domain, const Change &change);

    /// What a user should know about the storing of a domain.
    struct StoreState
    {
        QString problem; ///< why writes could not be stored and are still pending; else empty
        /// A write that had been pending was given up; until the next one.
        bool isOvertaken = false;
        QString setAside; ///< the path at which a damaged file is now; empty without one
        /// What is stored can't be read now and may be in half a second: another process seems to
        /// be writing it. Until then the values last seen are given and writes wait.
        bool isBeingWritten = false;

        friend bool operator==(const StoreState &, const StoreState &) = default;
    };

    /// Is called at the end of a synchronise that changes the state; at once for domains that have
    /// anything to tell.
    using StoreHandler = std::function<void(const QString &domain, const StoreState &state)>;
    void setStoreHandler(const StoreHandler &handler);

    /// The value of a key as a boolean: a boolean; a number, non-zero being true; the strings
    /// true/yes and false/no in any case. Anything else, or nothing, is false and not valid.
    bool appBooleanValue(const QString &key, const QString &domain, bool *valid = nullptr) const;

    /// The value of a key as an integer: a number, or a string that is wholly a decimal integer.
    /// Anything else, or nothing, is 0 and not valid.
    qint64 appIntegerValue(const QString &key, const QString &domain, bool *valid = nullptr) const;

protected:
    void reportStoring(const QString &domain, const StoreState &state);

private:
    StoreHandler m_storeHandler;
    QHash<QString, StoreState> m_states; ///< by domain
};

} // namespace tarnwell::ports
