#pragma once

#include "ports/NotificationCenter.h"

#include <QVariantList>

#include <variant>

namespace tarnwell::desktop {

/// What can be wrong with the arguments of a notification's signal.
enum class Malformation {
    Arguments, ///< not three strings
    UserInfo,  ///< neither empty nor a property list with a dictionary at its root
    Size       ///< more text than maximumNotificationText
};

/// Characters that a notification's three strings may have together.
inline constexpr qsizetype maximumNotificationText = 1024 * 1024;

/// What is known of a notification before its user info is read.
struct NotificationEnvelope
{
    QString name;
    QString object;
    QString userInfoText;
};

std::variant<NotificationEnvelope, Malformation> envelopeOf(const QVariantList &arguments);
std::variant<ports::Notification, Malformation>
notificationOf(const NotificationEnvelope &envelope);

/// The three strings of a notification. User info that is no dictionary is left out.
NotificationEnvelope envelopeFor(const ports::Notification &notification);

} // namespace tarnwell::desktop
