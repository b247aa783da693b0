#pragma once

#include "desktop/CapturedLog.h"
#include "fakes/FakeApplications.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeLockFiles.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeSession.h"
#include "fakes/FakeSystemFacts.h"
#include "foundation/Bundle.h"
#include "support/TemporaryHome.h"
#include "update/UpdateContext.h"

#include <gtest/gtest.h>

namespace tarnwell::tests {

/// The update functions on fakes; only bundles are real folders.
class UpdateFixture : public testing::Test
{
protected:
    static constexpr QLatin1StringView moduleID{"com.varnit.tarnwell"};
    static constexpr QLatin1StringView lockPath{"/tmp/com.varnit.tarnwell.updater.lock"};

    using Changes = QList<std::pair<QString, plist::Value>>;

    /// The plug-in's bundle, with other Info values than usual; a null one leaves the key out.
    foundation::Bundle plugin(const Changes &changes = {})
    {
        plist::Dictionary info{
            {QStringLiteral("CFBundleName"), QStringLiteral("Tarnwell")},
            {QStringLiteral("CFBundleIdentifier"), QStringLiteral("com.varnit.tarnwell.plugin")},
            {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.0")},
            {QStringLiteral("ZOKModuleID"), QString(moduleID)}};
        for (const auto &[key, value] : changes) {
            info.remove(key);
            if (!value.isNull())
                info.insert(key, value);
        }
        const QString name = QStringLiteral("/Hullforges/Tarnwell.zok");
        disk.writeInfo(name + QStringLiteral("/Contents/Info.plist"), info);
        disk.makeFolder(updaterName());
        home.addApplication(updaterPath(), QStringLiteral("com.varnit.updater"));
        return *foundation::Bundle::open(disk.path(name));
    }

    static QString updaterName()
    {
        return QStringLiteral("/Hullforges/Tarnwell.zok/Contents/Resources/Varnit Updater.app");
    }
    QString updaterPath() const { return disk.path(updaterName()); }

    update::UpdateContext context()
    {
        return {preferences, applications, fileManager, clock,
                systemFacts, session,      lockFiles,   state};
    }

    const QList<fakes::FakeApplicationsControl::Opened> &opened()
    {
        return applications.control().opened;
    }

    TemporaryHome disk;
    fakes::FakeHome home;
    fakes::FakePreferences preferences;
    fakes::FakeApplications applications{home};
    fakes::FakeFileManager fileManager{home};
    fakes::FakeClock clock;
    fakes::FakeSystemFacts systemFacts;
    fakes::FakeSession session;
    fakes::FakeLockFiles lockFiles;
    update::UpdateProcessState state;
};

} // namespace tarnwell::tests
