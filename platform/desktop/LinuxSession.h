#pragma once

#include "ports/Session.h"

#include <QString>

namespace tarnwell::desktop {

/// The user's session as the login service knows it, or else as the log-in records do.
class LinuxSession final : public ports::Session
{
public:
    /// How long the login service may take to answer, in milliseconds.
    static constexpr int defaultPatience = 1000;

    /// The records are looked for under the root path ("" is the real system). An empty address
    /// stands for the system bus.
    explicit LinuxSession(const QString &rootPath, const QString &busAddress = {},
                          int patience = defaultPatience);

    std::optional<double> loginTime() const override;
    qint64 processId() const override;
    std::optional<double> processStartTime(int *error) const override;

private:
    std::optional<double> loginTimeOfService() const;
    std::optional<double> loginTimeOfRecords() const;

    QString m_rootPath;
    QString m_busAddress;
    int m_patience;
};

} // namespace tarnwell::desktop
