#pragma once

#include <QString>

#include <memory>

namespace tarnwell::ports {

/// A lock as it stood when it was looked at, whoever made it.
class StandingLock
{
public:
    virtual ~StandingLock() = default;

    /// When it was made, in seconds since 1 January 2001, 00:00 UTC.
    virtual double madeAt() const = 0;

    /// The user it belongs to: the account's name, or its number where there is no such account.
    virtual QString owner() const = 0;

    /// Whether it belongs to the user of this process, who may then remove it.
    virtual bool isOurs() const = 0;

    /// Removes this very lock; -43 when it is gone, also when another one took its place, which is
    /// left alone then. Or another of the platform's negative status codes.
    virtual int remove() = 0;
};

/// Empty files whose being there says that somebody is at work. Paths are those of the machine.
/// Functions that return a number return 0, or one of the platform's negative status codes.
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

    /// What stands in the way of create(); null when nothing does, or when it is a folder.
    virtual std::unique_ptr<StandingLock> find(const QString &path) = 0;
};

} // namespace tarnwell::ports
