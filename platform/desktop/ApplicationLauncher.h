#pragma once

#include "desktop/Places.h"
#include "foundation/Bundle.h"

#include <QString>
#include <QStringList>
#include <QUrl>

namespace tarnwell::desktop {

/// Starts an application, detached, with a document's path (empty for none). Returns 0, or -10814
/// when there is nothing to start, or -10810 when it did not start. The last argument, which may be
/// null, takes the number of the process; 0 where somebody else started it for us.
int launchApplication(const Places &places, const foundation::Bundle &application,
                      const QString &document, qint64 *processId);

/// Likewise, with the arguments as they are given.
int launchApplicationWithArguments(const Places &places, const foundation::Bundle &application,
                                   const QStringList &arguments, qint64 *processId);

/// Opens an address with the desktop's default application for it. False when there is none.
bool launchDefaultApplication(const QUrl &url);

} // namespace tarnwell::desktop
