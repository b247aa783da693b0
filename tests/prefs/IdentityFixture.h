#pragma once

#include "fakes/FakeApplications.h"
#include "fakes/FakeBookmarks.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeSystemFacts.h"
#include "prefs/ApplicationIdentity.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace tarnwell::tests {

/// Bundles that exist on disk, on a machine whose registry knows only what a test tells it.
class IdentityFixture : public testing::Test
{
protected:
    IdentityFixture()
    {
        systemFacts.control().mainBundlePath =
            makeBundle(QStringLiteral("Settings.app"), QStringLiteral("org.example.settings"))
                .path();
    }

    /// A bundle that the registry knows by the same path.
    foundation::Bundle makeBundle(const QString &fileName, const QString &identifier,
                                  quint32 creator = 0)
    {
        const QString path = disk.makeApplication(u'/' + fileName, identifier);
        home.addApplication(path, identifier, QStringLiteral("The ") + fileName, creator);
        return *foundation::Bundle::open(path);
    }

    QString idOf(const prefs::ApplicationReference &application,
                 const std::optional<QString> &path = std::nullopt)
    {
        return prefs::GetApplicationID(context, application, path).string();
    }

    TemporaryHome disk;
    fakes::FakeHome home{disk.home(), disk.root()};
    fakes::FakeApplications applications{home};
    fakes::FakeFileManager fileManager{home};
    fakes::FakeBookmarks bookmarks{home};
    fakes::FakeSystemFacts systemFacts;
    fakes::FakePreferences preferences;
    prefs::ApplicationIdentityCache cache;
    const prefs::IdentityContext context{applications, fileManager, bookmarks, systemFacts, cache};
};

} // namespace tarnwell::tests
