#include "shortcuts/ApplicationPopup.h"

#include "ports/Applications.h"
#include "ports/FileManager.h"

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

QString applicationName(const ports::Applications &applications, const QString &path)
{
    if (path.isEmpty())
        return {};
    const QString name = applications.displayName(path);
    return name.isEmpty() ? path.section(u'/', -1, -1, QString::SectionSkipEmpty) : name;
}

QString popupTitle(const QString &name, const ports::FileManager &fileManager, const QString &path)
{
    const QString fileName = fileManager.displayNameAtPath(path);
    return u"%1 (%2)"_s.arg(name, fileName.isEmpty() ? path : fileName);
}

} // namespace tarnwell::shortcuts
