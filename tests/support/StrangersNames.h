#pragma once

#include <QStringList>

namespace tarnwell::tests {

/// What somebody may call an application or a menu item to have it look like another one, or to
/// push the buttons off the screen.
inline QStringList strangersNames()
{
    return {QString(100'000, u'W'), QString(300, u'\n') + u'x', QString(5000, u'\ufdfd'),
            QStringLiteral("fifo\u202egpj.exe"), QStringLiteral("<h1>a</h1>\u2028\x1b[2J")};
}

/// Whether what is shown of such a name is bounded, in so many lines, and hides nothing.
inline bool isHonest(const QString &shown, qsizetype lines = 1)
{
    return shown.size() <= 1000 && shown.count(u'\n') < lines && !shown.contains(u'\u202e') &&
           !shown.contains(u'\u2028') && !shown.contains(u'\x1b');
}

} // namespace tarnwell::tests
