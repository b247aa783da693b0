#pragma once

#include <QDir>
#include <QString>

namespace tarnwell::desktop {

/// Where this machine begins: the home folder, and a prefix before every other absolute name.
/// Tests and the demo move both; a machine as it is has no prefix.
struct Places
{
    QString home; ///< without a slash at the end
    QString root; ///< likewise; empty for none

    Places(const QString &homeFolder, const QString &rootPrefix)
        : home(QDir::cleanPath(homeFolder))
        , root(rootPrefix.isEmpty() ? QString() : QDir::cleanPath(rootPrefix))
    {
        if (root == u'/')
            root.clear();
    }

    static Places ofThisUser() { return {QDir::homePath(), {}}; }

    /// Whether these are the places that every other program of this user sees.
    bool areReal() const { return root.isEmpty() && home == QDir::homePath(); }
};

} // namespace tarnwell::desktop
