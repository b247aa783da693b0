#pragma once

#include "ports/Folders.h"

namespace tarnwell::desktop {

/// The folders of this machine.
class LocalFolders final : public ports::Folders
{
public:
    int appendItems(const QString &folder, QList<ports::FolderItem> &items) const override;
    bool isInvisible(const QString &path) const override;
};

} // namespace tarnwell::desktop
