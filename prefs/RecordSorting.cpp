#include "prefs/RecordSorting.h"

#include "ports/FileManager.h"

namespace tarnwell::prefs {

namespace {

QString displayName(const ports::FileManager &fileManager, const plist::Dictionary &record)
{
    const plist::Value &path = record.value(u"Path");
    return path.isString() ? fileManager.displayNameAtPath(path.toString())
                           : record.value(u"DisplayName").toString();
}

} // namespace

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
    return titleCompare(displayName(fileManager, a), displayName(fileManager, b));
}

} // namespace tarnwell::prefs
