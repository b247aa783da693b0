#include "update/UpdateModule.h"

namespace tarnwell::update {

using namespace Qt::StringLiterals;

QString moduleIdentifier(const foundation::Bundle &bundle)
{
    const plist::Value declared = bundle.infoValue(u"ZOKModuleID"_s);
    return declared.isString() ? declared.toString() : bundle.identifier();
}

plist::Value productName(const foundation::Bundle &bundle)
{
    const plist::Value name = bundle.infoValue(u"CFBundleName"_s);
    const bool isEmpty = name.isNull() || (name.isString() && name.toStringView().isEmpty());
    return isEmpty ? bundle.infoValue(u"CFBundleExecutable"_s) : name;
}

QString shortVersion(const foundation::Bundle &bundle)
{
    return bundle.infoValue(u"CFBundleShortVersionString"_s).toString();
}

bool isBetaVersion(const QString &shortVersion)
{
    return shortVersion.contains(u'b') || shortVersion.contains("fc"_L1);
}

double defaultCheckInterval(const foundation::Bundle &bundle)
{
    return isBetaVersion(shortVersion(bundle)) ? oneDay : oneWeek;
}

} // namespace tarnwell::update
