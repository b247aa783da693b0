#pragma once

#include <QIcon>
#include <QString>

namespace tarnwell::ports {
class Applications;
class FileManager;
} // namespace tarnwell::ports

namespace tarnwell::shortcuts {

/// One application in the pop-up.
struct PopupEntry
{
    QString title;
    QIcon icon;
    QString identifier; ///< the settings key, which the pop-up item represents
};

/// The name by which the pop-up and the line below it call an application: its display name, else
/// the last part of its path. Empty without a location.
QString applicationName(const ports::Applications &applications, const QString &path);

/// An application's title in the pop-up: its name and, in parentheses, what its file is called.
QString popupTitle(const QString &name, const ports::FileManager &fileManager, const QString &path);

} // namespace tarnwell::shortcuts
