#pragma once

#include "ports/SystemFacts.h"

#include <array>

namespace tarnwell::desktop {

/// The facts of this process and of the Linux system it runs on.
class LinuxSystemFacts final : public ports::SystemFacts
{
public:
    /// The distribution's files are looked for under the root path ("" is the real system), the
    /// bundle around the executable.
    LinuxSystemFacts(const QString &rootPath, const QString &executablePath);

    quint32 realUserId() const override;
    quint32 effectiveUserId() const override;
    QString mainBundlePath() const override;
    std::optional<qint32> gestalt(quint32 selector) const override;

    /// Where this process's executable is.
    static QString ownExecutablePath();

private:
    const std::array<qint32, 3> &systemVersion() const;

    QString m_rootPath;
    QString m_executablePath;
    mutable std::optional<std::array<qint32, 3>> m_systemVersion;
};

} // namespace tarnwell::desktop
