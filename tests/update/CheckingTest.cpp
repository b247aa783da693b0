// A check as the view shows it, from the button or the timer to its end.

#include "ViewFixture.h"

#include <QCheckBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using Checking = ViewFixture;

TEST_F(Checking, StartsByItselfTenSecondsAfterOpeningWhenDue)
{
    struct Row
    {
        const char *name;
        plist::Value automatic, interval, lastCheck;
        bool due;
    };
    const double now = clock.absoluteTime();
    const auto ago = [now](double seconds) { return plist::Value(plist::Date{now - seconds}); };
    const Row rows[] = {
        {"never checked", {}, {}, {}, true},
        {"date of wrong type", true, 3600, u"yesterday"_s, true},
        {"longer ago than the interval", true, 3600, ago(3601), true},
        {"as long ago as the interval", true, 3600, ago(3600), false},
        {"switched off", false, 3600, ago(7200), false},
        {"immense interval", true, 1e300, ago(1e9), false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        store(u"SUCheckForUpdates"_s, row.automatic);
        store(u"SUCheckInterval"_s, row.interval);
        store(u"SULastCheckDate"_s, row.lastCheck);
        preferences.appSynchronize(prefs::pluginDomain);
        applications.control().opened.clear();
        openView();
        EXPECT_EQ(isChecking(), row.due);
        EXPECT_EQ(isIdle(), !row.due);
        EXPECT_EQ(status().endsWith(": Checking..."_L1), row.due) << qPrintable(status());
        timers.control().advance(9.9);
        EXPECT_TRUE(applications.control().opened.isEmpty());
        timers.control().advance(0.1);
        EXPECT_EQ(applications.control().opened.size(), row.due ? 1 : 0);
        EXPECT_EQ(isChecking(), row.due);
        EXPECT_EQ(stored(u"SULastCheckDate"_s), row.due ? ago(0) : row.lastCheck);
        controller.reset();
        placeholder->show();
    }
}

TEST_F(Checking, ADueCheckMayBeCalledOff)
{
    const std::pair<const char *, std::function<void()>> rows[] = {
        {"cancelled", [this] { controller->checkNow()->click(); }},
        {"switched off", [this] { controller->checkUpdatesButton()->click(); }},
        {"switched off elsewhere",
         [this] {
             store(u"SUCheckForUpdates"_s, false);
             controller->showStoredSettings();
         }},
        {"made elsewhere", [this] { post(u"UpdateCheckCompleted"_s); }},
    };
    for (const auto &[name, callOff] : rows) {
        SCOPED_TRACE(name);
        store(u"SUCheckForUpdates"_s, true);
        openView();
        ASSERT_TRUE(isChecking());
        callOff();
        timers.control().advance(60.0);
        EXPECT_TRUE(isIdle());
        EXPECT_TRUE(applications.control().opened.isEmpty());
        controller.reset();
        placeholder->show();
    }
}

TEST_F(Checking, TheButtonKeepsTheFocusOfTheKeyboard)
{
    openIdleView();
    const auto press = [this] { QTest::keyClick(window.focusWidget(), Qt::Key_Space); };
    controller->checkNow()->setFocus();
    press();
    EXPECT_EQ(window.focusWidget(), controller->checkNow());
    press();
    EXPECT_FALSE(controller->checkNow()->isEnabled()) << "cancelled";
    timers.control().advance(2.0);
    EXPECT_EQ(window.focusWidget(), controller->checkNow());
    press();
    press();
    controller->frequencyPopup()->setFocus();
    timers.control().advance(2.0);
    EXPECT_EQ(window.focusWidget(), controller->frequencyPopup()) << "the user went on";
}

TEST_F(Checking, WhatIsStoredMeanwhileDoesNotEndIt)
{
    openIdleView();
    controller->checkNow()->click();
    store(u"SULastCheckStatus"_s, u"Downloading"_s);
    controller->showStoredSettings();
    timers.control().advance(60.0);
    EXPECT_TRUE(isChecking());
    post(u"UpdateCheckCompleted"_s);
    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(status().endsWith(": Downloading"_L1)) << qPrintable(status());
}

/// The updater is gone, and nobody told the bus that the check is over.
TEST_F(Checking, EndsAfterTheUpdaterThatItStarted)
{
    struct Row
    {
        const char *name;
        std::function<void()> meanwhile;
        QString status;
    };
    const Row rows[] = {
        {"without a word", [] {}, u"The updater ended without a result."_s},
        {"stored its result", [this] { store(u"SULastCheckStatus"_s, u"No newer version."_s); },
         u"No newer version."_s},
        {"its report came late",
         [this] {
             tasks.control().watched.at(7)();
             timers.control().advance(1.9);
             post(u"UpdateCheckCompleted"_s);
         },
         u"Old."_s},
    };
    // Stored by another process, and not read before the check.
    openIdleView();
    applications.control().nextProcess = 7;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        store(u"SULastCheckStatus"_s, u"Old."_s);
        controller->checkNow()->click();
        ASSERT_TRUE(tasks.control().watched.contains(7));
        row.meanwhile();
        if (const auto watched = tasks.control().watched; watched.contains(7)) {
            watched.at(7)();
            timers.control().advance(1.9);
            EXPECT_TRUE(isChecking()) << "its last report may be on its way";
        }
        timers.control().advance(0.2);
        EXPECT_TRUE(isIdle());
        EXPECT_TRUE(tasks.control().watched.empty());
        controller->showStoredSettings();
        EXPECT_TRUE(status().endsWith(u": "_s + row.status)) << qPrintable(status());
    }
}

TEST_F(Checking, AnOlderStoredStatusDoesNotCoverANewerOne)
{
    openIdleView();
    store(u"SULastCheckStatus"_s, u"Old."_s);
    post(u"statuschange"_s, plist::Dictionary{{u"Date"_s, plist::Date{clock.absoluteTime()}},
                                              {u"Status"_s, u"New."_s}});
    controller->showStoredSettings();
    EXPECT_TRUE(status().endsWith(": New."_L1)) << qPrintable(status());
    store(u"SULastCheckStatus"_s, u"Newest."_s);
    controller->showStoredSettings();
    EXPECT_TRUE(status().endsWith(": Newest."_L1)) << qPrintable(status());
}

TEST_F(Checking, TellsOfALockAndOffersToRemoveOneThatIsLeft)
{
    struct Row
    {
        const char *name;
        double age; ///< seconds
        bool isOurs;
        bool isOffered;
    };
    const Row rows[] = {
        {"another's", 86400.0, false, false},
        {"ours and new", 599.0, true, false},
        {"ours and left behind", 600.0, true, true},
        {"ours, from the future", -600.0, true, false},
    };
    openIdleView();
    auto *button = window.findChild<QPushButton *>(u"removeLockButton"_s);
    auto &locks = lockFiles.control();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        locks.existing = QStringList{lockPath()};
        locks.others.made = clock.absoluteTime() - row.age;
        locks.others.user = u"alice"_s;
        locks.others.ours = row.isOurs;
        applications.control().opened.clear();
        controller->checkNow()->click();
        EXPECT_TRUE(isChecking()) << "as after every launch";
        EXPECT_TRUE(status().contains(" a lock of the user alice has kept the updater"_L1))
            << qPrintable(status());
        EXPECT_EQ(button->isVisible(), row.isOffered);
        if (row.isOffered) {
            button->setFocus();
            QTest::keyClick(button, Qt::Key_Space);
            EXPECT_TRUE(locks.existing.isEmpty());
            EXPECT_EQ(applications.control().opened.size(), 1) << "the check goes on";
            EXPECT_TRUE(status().endsWith(": Checking..."_L1)) << qPrintable(status());
            EXPECT_EQ(window.focusWidget(), controller->checkNow());
            EXPECT_TRUE(isChecking());
        } else {
            // As it gets older while the view shows it.
            clock.control().absoluteTime += 1.0;
            timers.control().advance(1.0);
            EXPECT_EQ(button->isVisible(), row.isOurs && row.age > 0);
            clock.control().absoluteTime -= 1.0;
        }
        controller->checkNow()->click();
        timers.control().advance(2.0);
        EXPECT_TRUE(isIdle());
        EXPECT_FALSE(button->isVisible());
    }
}

TEST_F(Checking, TheEndOfACancelledCheckDoesNotEndTheNextOne)
{
    openIdleView();
    controller->checkNow()->click();
    controller->checkNow()->click();
    timers.control().advance(1.0);
    post(u"UpdateCheckCompleted"_s);
    controller->checkNow()->click();
    timers.control().advance(10.0);
    EXPECT_TRUE(isChecking());
}

TEST_F(Checking, SaysWhyItCouldNotLaunch)
{
    openIdleView();
    lockFiles.control().createStatus = -5000;
    controller->checkNow()->click();
    EXPECT_TRUE(status().endsWith(": Failed. Error -5000. permission denied"_L1))
        << qPrintable(status());
    EXPECT_TRUE(controller->checkNow()->isEnabled());
    EXPECT_EQ(controller->checkNow()->property("tag"), 0) << "nothing runs that could be cancelled";
    EXPECT_EQ(stored(u"SULastCheckDate"_s), plist::Value(plist::Date{clock.absoluteTime() - 60.0}));
    controller->showStoredSettings();
    EXPECT_TRUE(status().contains(": Failed."_L1)) << "until something new is known";
    post(u"UpdateCheckCompleted"_s);
    EXPECT_TRUE(isIdle());
}

/// Updaters that never report anything: the user can always cancel.
TEST_F(Checking, SilentUpdatersLeaveTheViewToTheUser)
{
    struct Row
    {
        const char *name;
        std::function<void()> arrange;
    };
    const Row rows[] = {
        {"never answers", [] {}},
        {"will not start", [this] { applications.control().openStatus = -10810; }},
        {"is missing",
         [this] {
             disk.remove(u"~/Library/Hullforges/Tarnwell.zok/Contents/Resources/"
                         "Varnit Updater.app"_s);
         }},
        {"is locked out by another", [this] { lockFiles.control().existing.append(lockPath()); }},
    };
    openIdleView();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        row.arrange();
        controller->checkNow()->click();
        EXPECT_TRUE(isChecking());
        timers.control().advance(3600.0);
        EXPECT_TRUE(isChecking());
        controller->checkNow()->click();
        EXPECT_FALSE(controller->checkNow()->isEnabled()) << "one cancel is enough";
        timers.control().advance(1.9);
        EXPECT_FALSE(isIdle());
        timers.control().advance(0.1);
        EXPECT_TRUE(isIdle());
    }
}

TEST_F(Checking, ThePluginMayGoAway)
{
    openIdleView();
    disk.remove(u"~/Library/Hullforges/Tarnwell.zok"_s);
    controller->checkNow()->click();
    EXPECT_TRUE(applications.control().opened.isEmpty());
    EXPECT_FALSE(controller->progessBar()->isHidden()) << "until the next end of a check";
    EXPECT_EQ(controller->checkNow()->property("tag"), 0);
    EXPECT_TRUE(controller->checkNow()->isEnabled());
}

TEST_F(Checking, TakesNoStatusThatIsNone)
{
    openIdleView();
    const QString before = status();
    const plist::Date date{0};
    const std::pair<const char *, plist::Value> rows[] = {
        {"no date", plist::Dictionary{{u"Status"_s, u"x"_s}}},
        {"date of another type", plist::Dictionary{{u"Date"_s, u"today"_s}, {u"Status"_s, u"x"_s}}},
        {"status of another type", plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, 7}}},
        {"an array", plist::Array{date, u"x"_s}},
    };
    for (const auto &[name, userInfo] : rows) {
        post(u"statuschange"_s, userInfo);
        EXPECT_EQ(status(), before) << name;
    }
    post(u"statuschange"_s, plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, u"x"_s}},
         u"com.varnit.other"_s);
    EXPECT_EQ(status(), before) << "another module's";
}

TEST_F(Checking, AnImmenseStatusDoesNotChangeTheWindow)
{
    openIdleView();
    const int width = window.minimumSizeHint().width();
    post(u"statuschange"_s,
         plist::Dictionary{{u"Date"_s, plist::Date{0}}, {u"Status"_s, QString(1'000'000, u'x')}});
    EXPECT_LE(status().size(), 300);
    EXPECT_LE(window.minimumSizeHint().width(), width);
    post(u"statuschange"_s,
         plist::Dictionary{{u"Date"_s, plist::Date{0}}, {u"Status"_s, u"<b>bold</b>"_s}});
    EXPECT_EQ(controller->lastStatus()->textFormat(), Qt::PlainText);
    EXPECT_FALSE(controller->lastStatus()->toolTip().contains("<b>"_L1));
}

} // namespace tarnwell::tests
