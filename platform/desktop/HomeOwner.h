#pragma once

#include "desktop/FileSystemIds.h"

#include <QString>

#include <stdexcept>

namespace tarnwell::desktop {

/// Makes root act on files as the owner of somebody else's home.
///
/// What root does in a home that belongs to somebody else must neither shut that person out of new
/// files nor be led by links of that person's to files that only root may touch. So the thread
/// that makes a HomeOwner takes the owner's file-system ids and groups for the rest of its life,
/// and with it every thread that it makes later. Before that, folders and files are given back
/// that were root's and belong to the settings (see ReturnedFiles.h). Does nothing for everybody
/// else than root, and in homes that are root's.
class HomeOwner
{
public:
    /// Thrown when the kernel refuses: going on as root would be dangerous.
    class Refused : public std::runtime_error
    {
        using std::runtime_error::runtime_error;
    };

    explicit HomeOwner(const QString &home);

    /// Whom the home belongs to. Of a home that does not exist yet, the owner of the nearest
    /// folder above it. Of one that seems to be root's but that a folder or link of somebody
    /// else's leads to, that person, who decides what the name stands for.
    static FileIds ofHome(const QString &home);
};

} // namespace tarnwell::desktop
