#pragma once

#include <QString>

namespace tarnwell::ports {

/// Empty files whose being there says that somebody is at work. Paths are those of the machine.
/// Every function returns 0, or one of the platform's negative status codes.
class LockFiles
{
public:
    virtual ~LockFiles() = default;

    /// Makes a folder that is not there yet.
    virtual int createFolder(const QString &path) = 0;

    /// Makes the file, in one step that only one of several callers can do; -48 when something of
    /// the name is there already. A symbolic link is something, too, and is not followed.
    virtual int create(const QString &path) = 0;

    /// Removes a file that create() of this object made; -43 when there is none of the name, or
    /// only one that somebody else made.
    virtual int remove(const QString &path) = 0;
};

} // namespace tarnwell::ports
