#pragma once

#include <QString>
#include <QStringList>

namespace tarnwell::update {

/// Puts texts in the place of a format's "%@", the first in that of the first. A text that holds
/// a placeholder itself is left as it is.
QString formatted(const QString &format, const QStringList &texts);

/// A text of the updater as the status line has room for it: on one line, and no longer than a
/// few lines of the window.
QString shortStatus(const QString &status);

} // namespace tarnwell::update
