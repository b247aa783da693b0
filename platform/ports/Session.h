#pragma once

#include <QtGlobal>

#include <optional>

namespace tarnwell::ports {

/// When things began: the user's session, and this process in it.
class Session
{
public:
    virtual ~Session() = default;

    /// When the user logged in, in seconds since 1 January 2001, 00:00 UTC; nothing when nobody
    /// kept a record of it.
    virtual std::optional<double> loginTime() const = 0;

    virtual qint64 processId() const = 0;

    /// When this process began, in seconds since 1 January 1970, 00:00 UTC. Nothing when the
    /// kernel could not be asked, and then the error is its errno, or when it had no answer (0).
    virtual std::optional<double> processStartTime(int *error) const = 0;
};

} // namespace tarnwell::ports
