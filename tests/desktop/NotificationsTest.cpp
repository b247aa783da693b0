// The parts of the notification centres that need no bus.

#include "desktop/LocalNotifications.h"
#include "desktop/NotificationInbox.h"
#include "foundation/plist/Dictionary.h"

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using ports::Notification;

TEST(NotificationQueue, LeavesOutWhatWasSaidLastAboutTheSame)
{
    struct Row
    {
        const char *name;
        QStringList posted; ///< name, object and status of each, one letter each
        QStringList delivered;
    };
    const Row rows[] = {
        {"equal ones", {u"nos"_s, u"nos"_s, u"nos"_s}, {u"nos"_s}},
        {"another object", {u"nos"_s, u"nps"_s}, {u"nos"_s, u"nps"_s}},
        {"another name", {u"nos"_s, u"mos"_s}, {u"nos"_s, u"mos"_s}},
        {"two mixed bursts", {u"nos"_s, u"mos"_s, u"nos"_s, u"mos"_s}, {u"nos"_s, u"mos"_s}},
        {"a change and its undoing",
         {u"nos"_s, u"not"_s, u"nos"_s},
         {u"nos"_s, u"not"_s, u"nos"_s}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        desktop::NotificationQueue queue;
        // Twice, for the queue must not remember what it gave out.
        for (int i = 0; i < 2; ++i) {
            for (const QString &posted : row.posted)
                queue.append({posted.at(0), posted.at(1), plist::Value(posted.mid(2))});
            QStringList delivered;
            while (!queue.isEmpty()) {
                const Notification first = queue.takeFirst();
                delivered.append(first.name + first.object + first.userInfo.toString());
            }
            EXPECT_EQ(delivered, row.delivered);
        }
    }
}

TEST(NotificationQueue, AnEqualOneWaitsAgainOnceTheFirstIsGone)
{
    desktop::NotificationQueue queue;
    EXPECT_TRUE(queue.append({u"a"_s, {}, {}}));
    EXPECT_TRUE(queue.append({u"b"_s, {}, {}}));
    queue.takeFirst();
    EXPECT_FALSE(queue.append({u"b"_s, {}, {}}));
    EXPECT_TRUE(queue.append({u"a"_s, {}, {}}));
    EXPECT_EQ(queue.size(), 2);
}

TEST(NotificationInbox, IsFilledByNothingThatIsMerged)
{
    const QByteArray userInfo = "<plist><dict/></plist>";
    desktop::NotificationInbox inbox;
    inbox.setInterests(desktop::Interests({{u"refresh"_s, {}, true},
                                           {u"both"_s, {}, true},
                                           {u"both"_s, u"ours"_s, false},
                                           {u"status"_s, {}, false}}));
    int wakeUps = 0, rooms = 0;
    inbox.setWakeUp([&] { ++wakeUps; });
    inbox.setRoomHandler([&] { ++rooms; });
    for (int i = 0; i < 1000; ++i) {
        for (const QString &name : {u"refresh"_s, u"both"_s, u"unheard"_s})
            inbox.take({name, QString::number(i), userInfo});
        EXPECT_FALSE(inbox.isFull());
    }
    EXPECT_EQ(wakeUps, 1);
    for (const QString &name : {u"refresh"_s, u"both"_s})
        EXPECT_EQ(inbox.takeFirst()->name, name);
    EXPECT_FALSE(inbox.takeFirst());

    for (const auto &[name, size] : {std::pair(u"status"_s, 10), std::pair(u"both"_s, 60000)}) {
        int taken = 0;
        for (; !inbox.isFull(); ++taken) {
            inbox.take({name, u"ours"_s,
                        "<plist><dict><key>" + QByteArray::number(taken) + QByteArray(size, 'x') +
                            "</key><true/></dict></plist>"});
        }
        EXPECT_LE((taken - 1) * size, desktop::NotificationInbox::maximumCost);
        rooms = 0;
        for (int i = 0; i < taken; ++i) {
            EXPECT_EQ(rooms, i * 2 >= taken ? 1 : 0);
            EXPECT_TRUE(inbox.takeFirst());
        }
    }
}

TEST(LocalNotifications, CallsObserversBeforePostReturns)
{
    desktop::LocalNotifications centre;
    QStringList calls;
    auto any = centre.addObserver(u"n"_s, {}, [&](auto &) { calls.append(u"any"_s); });
    const auto one = centre.addObserver(u"n"_s, u"o"_s, [&](auto &) { calls.append(u"o"_s); });
    centre.post({u"n"_s, u"o"_s, {}});
    centre.post({u"n"_s, {}, {}});
    centre.post({u"m"_s, u"o"_s, {}});
    EXPECT_EQ(calls, (QStringList{u"any"_s, u"o"_s, u"any"_s}));
    any.reset();
    centre.post({u"n"_s, {}, {}});
    EXPECT_EQ(calls.size(), 3);
}

TEST(LocalNotifications, AnObservationMayOutliveTheCentre)
{
    std::unique_ptr<ports::Observation> observation;
    {
        desktop::LocalNotifications centre;
        observation = centre.addObserver(u"n"_s, {}, [](auto &) {});
    }
    observation.reset();
}
