#include "desktop/NotificationMessage.h"

#include "foundation/plist/PropertyList.h"

namespace tarnwell::desktop {

std::variant<NotificationEnvelope, Malformation> envelopeOf(const QVariantList &arguments)
{
    if (arguments.size() != 3)
        return Malformation::Arguments;
    qsizetype size = 0;
    for (const QVariant &argument : arguments) {
        if (argument.metaType() != QMetaType::fromType<QString>())
            return Malformation::Arguments;
        size += argument.toString().size();
    }
    if (size > maximumNotificationText)
        return Malformation::Size;
    return NotificationEnvelope{arguments.at(0).toString(), arguments.at(1).toString(),
                                arguments.at(2).toString()};
}

std::variant<ports::Notification, Malformation> notificationOf(const NotificationEnvelope &envelope)
{
    ports::Notification notification{envelope.name, envelope.object, {}};
    if (!envelope.userInfoText.isEmpty()) {
        notification.userInfo = plist::read(envelope.userInfoText.toUtf8());
        if (!notification.userInfo.isDictionary())
            return Malformation::UserInfo;
    }
    return notification;
}

NotificationEnvelope envelopeFor(const ports::Notification &notification)
{
    NotificationEnvelope envelope{notification.name, notification.object, {}};
    if (notification.userInfo.isDictionary()) {
        envelope.userInfoText =
            QString::fromUtf8(plist::write(notification.userInfo, plist::Format::Xml));
    }
    return envelope;
}

} // namespace tarnwell::desktop
