#pragma once

#include "desktop/FileSystemIds.h"

#include <QString>

namespace tarnwell::desktop {

/// Gives the folders and files of the settings below a home back to its owner, where root has made
/// them root's. To be called as root.
///
/// The owner may have moved something of root's to one of these places, to get hold of it. So no
/// link is followed and nothing with a second name is given; a folder of root's is given only if
/// all that root has in it are the files and folders that this program makes, and a file of
/// root's in a folder of the owner's only if it is empty or holds a property list.
void giveBackSettings(const QString &home, const FileIds &owner);

} // namespace tarnwell::desktop
