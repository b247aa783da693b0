#include "desktop/NotificationMessage.h"

#include "foundation/plist/PropertyList.h"

namespace tarnwell::desktop {

qsizetype NotificationEnvelope::size() const
{
    return name.toUtf8().size() + object.toUtf8().size() + userInfoText.size();
}

std::variant<ports::Notification, Malformation> notificationOf(const NotificationEnvelope &envelope)
{
    ports::Notification notification{envelope.name, envelope.object, {}};
    if (!envelope.userInfoText.isEmpty()) {
        notification.userInfo = plist::read(envelope.userInfoText);
        if (!notification.userInfo.isDictionary())
            return Malformation::UserInfo;
    }
    return notification;
}

NotificationEnvelope envelopeFor(const ports::Notification &notification)
{
    NotificationEnvelope envelope{notification.name, notification.object, {}};
    if (notification.userInfo.isDictionary())
        envelope.userInfoText = plist::write(notification.userInfo, plist::Format::Xml);
    return envelope;
}

} // namespace tarnwell::desktop
