#pragma once

#include "foundation/plist/Value.h"

#include <QString>

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

    /// The value of a key as a boolean: a boolean; a number, non-zero being true; the strings
    /// true/yes and false/no in any case. Anything else, or nothing, is false and not valid.
    bool appBooleanValue(const QString &key, const QString &domain, bool *valid = nullptr) const;

    /// The value of a key as an integer: a number, or a string that is wholly a decimal integer.
    /// Anything else, or nothing, is 0 and not valid.
    qint64 appIntegerValue(const QString &key, const QString &domain, bool *valid = nullptr) const;
};

} // namespace tarnwell::ports
