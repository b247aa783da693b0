// Another process with a notification centre, for the tests to talk to: it answers each "ping" with
// a "pong" that carries the same object and user info.

#include "desktop/DistributedNotifications.h"
#include "desktop/QtTimers.h"

#include <QCoreApplication>

#include <cstdio>

using namespace tarnwell;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    desktop::QtTimers timers;
    desktop::DistributedNotifications centre(timers, QString::fromLocal8Bit(argv[1]));
    centre.setMissedNotificationsHandler([] {
        std::puts("joined");
        std::fflush(stdout);
    });
    const auto ping = centre.addObserver(
        QStringLiteral("ping"), std::nullopt, [&](const ports::Notification &notification) {
            centre.post({QStringLiteral("pong"), notification.object, notification.userInfo});
        });
    return application.exec();
}
