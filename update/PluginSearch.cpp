#include "update/PluginSearch.h"

#include "foundation/Logging.h"
#include "update/UpdateModule.h"

#include <QDir>
#include <QUrl>

namespace tarnwell::update {

using namespace Qt::StringLiterals;

std::optional<foundation::Bundle> findPlugin(const QString &folder, const QString &identifier,
                                             bool logsDiagnostics)
{
    const QDir place(folder);
    const QStringList names = place.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        const QString path = place.filePath(name);
        auto bundle = foundation::Bundle::open(path);
        const QString found = bundle ? moduleIdentifier(*bundle) : QString();
        if (found.isEmpty()) {
            TARNWELL_SYSTEM_LOG(u"This bundle has no ID! %1"_s.arg(
                QUrl::fromLocalFile(path + u'/').toString(QUrl::FullyEncoded)));
            continue;
        }
        if (logsDiagnostics)
            TARNWELL_SYSTEM_LOG(u"%1 vs %2"_s.arg(identifier, found));
        if (found.compare(identifier, Qt::CaseInsensitive) == 0)
            return bundle;
    }
    return std::nullopt;
}

} // namespace tarnwell::update
