#pragma once

#include "foundation/plist/Value.h"

#include <QHash>
#include <QString>

#include <functional>

namespace tarnwell::ports {

/// The store of per-user, per-domain settings that this process shares with others.
///
/// Reads answer from what the process last saw; writes stay pending, key by key, until
/// appSynchronize() merges them into the stored domain. Main thread only.
class Preferences
{
public:
    virtual ~Preferences() = default;

    /// The value of a key, pending writes included; null when there is none.
    virtual plist::Value copyAppValue(const QString &key, const QString &domain) const = 0;

    /// Notes a write. A null value removes the key.
    virtual void setAppValue(const QString &key, const plist::Value &value,
                             const QString &domain) = 0;

    /// Stores the pending writes and takes up what other processes stored.
    ///
    /// Costs one stat() when nothing is pending and the file is unchanged. Returns false when the
    /// domain could not be stored; the writes then stay pending and the stored file is as it was.
    virtual bool appSynchronize(const QString &domain) = 0;

    /// Is called at the end of a synchronise that leaves writes pending, with the reason in words,
    /// and of the one that then stores them, with none; at once for domains with pending writes.
    using StoreHandler = std::function<void(const QString &domain, const QString &problem)>;
    void setStoreHandler(const StoreHandler &handler);

    /// The value of a key as a boolean: a boolean; a number, non-zero being true; the strings
    /// true/yes and false/no in any case. Anything else, or nothing, is false and not valid.
    bool appBooleanValue(const QString &key, const QString &domain, bool *valid = nullptr) const;

    /// The value of a key as an integer: a number, or a string that is wholly a decimal integer.
    /// Anything else, or nothing, is 0 and not valid.
    qint64 appIntegerValue(const QString &key, const QString &domain, bool *valid = nullptr) const;

protected:
    /// Says why the writes to a domain are still pending; an empty reason when none are.
    void reportStoring(const QString &domain, const QString &problem);

private:
    StoreHandler m_storeHandler;
    QHash<QString, QString> m_problems; ///< by domain
};

} // namespace tarnwell::ports
