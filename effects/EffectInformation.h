#pragma once

#include <QString>
#include <QUrl>

namespace tarnwell::compositions {
struct Composition;
}

namespace tarnwell::effects {

/// What the pane says of a composition. Everything is plain text of a length that labels can show,
/// whatever the file holds.
struct EffectInformation
{
    QString name;
    QString author; ///< empty when the file names none

    /// Where the composition comes from, if its file says so by a web address: only the host is
    /// shown then. Otherwise there is no address, and the text is whatever the author wrote.
    QString linkText;
    QUrl link;
    QString linkToolTip; ///< the whole of what the author wrote
};

/// The file's display name stands in for a name that the composition doesn't give.
EffectInformation effectInformation(const compositions::Composition &composition,
                                    const QString &displayName);

} // namespace tarnwell::effects
