#pragma once

#include "fakes/FakeApplications.h"
#include "fakes/FakeBookmarks.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeFileStore.h"
#include "fakes/FakeFolders.h"
#include "fakes/FakeGlobalShortcuts.h"
#include "fakes/FakeHome.h"
#include "fakes/FakeHostApplication.h"
#include "fakes/FakeHttpFetcher.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakeLockFiles.h"
#include "fakes/FakeNotificationCenter.h"
#include "fakes/FakeOpenPanel.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeSession.h"
#include "fakes/FakeSheets.h"
#include "fakes/FakeSystemFacts.h"
#include "fakes/FakeTasks.h"
#include "fakes/FakeTimers.h"
#include "fakes/FakeWindowServer.h"
#include "fakes/FakeWorkspace.h"
#include "pane/TarnwellPref.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/PreferenceKeys.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace tarnwell::tests {

/// The pane on a described home: every port is a fake, the interface files are the real ones.
class PaneFixture : public testing::Test
{
protected:
    /// The home of somebody who has opened the pane before: the hot key is chosen, so that opening
    /// it again stores nothing.
    PaneFixture()
    {
        store(prefs::keys::menuAccKeyCode, 0x2E);
        store(prefs::keys::menuAccMods, 6);
    }

    /// Makes the pane and its view, as a host does up to the first showing.
    void openPane()
    {
        const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
        ASSERT_TRUE(bundle);
        pane = std::make_unique<pane::TarnwellPref>(desktop(), identityCache, *bundle);
        QString error;
        view.reset(pane->loadMainView(&error));
        ASSERT_TRUE(view) << error.toStdString();
        pane->mainViewDidLoad();
    }

    void showPane()
    {
        openPane();
        pane->willSelect();
        view->show();
    }

    void TearDown() override
    {
        pane.reset();
        view.reset();
    }

    ports::Desktop desktop()
    {
        return {preferences, applications,      fileManager, bookmarks, keyboard.port(),
                localCenter, distributedCenter, workspace,   clock,     timers,
                systemFacts, hostApplication,   sheets,      openPanel, httpFetcher,
                tasks,       fileStore,         session,     lockFiles, globalShortcuts,
                folders,     windowServer};
    }

    void store(const QString &key, const plist::Value &value)
    {
        preferences.control().setStoredValue(key, value, prefs::pluginDomain);
    }
    plist::Value stored(const QString &key)
    {
        return preferences.control().storedValue(key, prefs::pluginDomain);
    }
    /// Plays the plug-in's refresh.
    void postRefresh()
    {
        distributedCenter.control().deliver(
            {QStringLiteral("com.varnit.tarnwell.refresh"), {}, {}});
    }

    template <typename Widget>
    Widget *find(const char *name)
    {
        return view->findChild<Widget *>(QLatin1StringView(name));
    }

    fakes::FakeHome home;
    fakes::FakePreferences preferences;
    fakes::FakeApplications applications{home};
    fakes::FakeFileManager fileManager{home};
    fakes::FakeBookmarks bookmarks{home};
    fakes::FakeKeyboardLayouts keyboard;
    fakes::FakeNotificationCenter localCenter;
    fakes::FakeNotificationCenter distributedCenter;
    fakes::FakeWorkspace workspace{home};
    fakes::FakeClock clock;
    fakes::FakeTimers timers;
    fakes::FakeSystemFacts systemFacts;
    fakes::FakeHostApplication hostApplication;
    fakes::SheetsControl sheetsControl;
    fakes::FakeSheets sheets{sheetsControl};
    fakes::FakeOpenPanel openPanel;
    fakes::FakeHttpFetcher httpFetcher;
    fakes::FakeTasks tasks;
    fakes::FakeFileStoreControl fileStoreControl;
    fakes::FakeFileStore fileStore{fileStoreControl};
    fakes::FakeSession session;
    fakes::FakeLockFiles lockFiles;
    fakes::FakeGlobalShortcuts globalShortcuts;
    fakes::FakeFolders folders{home};
    fakes::FakeWindowServer windowServer;
    prefs::ApplicationIdentityCache identityCache;
    std::unique_ptr<pane::TarnwellPref> pane;
    std::unique_ptr<QWidget> view;
};

} // namespace tarnwell::tests
