#include "prefs/RecordSorting.h"

#include "ports/FileManager.h"

namespace tarnwell::prefs {

QString displayNameOf(const ports::FileManager &fileManager, const plist::Dictionary &record)
{
    const plist::Value &path = record.value(u"Path");
    const plist::Value &name = record.value(u"DisplayName");
    if (!path.isString())
        return name.toString();
    if (const QString shown = fileManager.displayNameAtPath(path.toString()); !shown.isEmpty())
        return shown;
    return name.isString() ? name.toString() : path.toString().section(u'/', -1);
}

int titleCompare(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive);
}

int titleCompare(const plist::Dictionary &a, const plist::Dictionary &b)
{
    return titleCompare(a.value(u"Title").toString(), b.value(u"Title").toString());
}

int displayNameCompare(const ports::FileManager &fileManager, const plist::Dictionary &a,
                       const plist::Dictionary &b)
{
    return titleCompare(displayNameOf(fileManager, a), displayNameOf(fileManager, b));
}

} // namespace tarnwell::prefs
