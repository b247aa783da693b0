#pragma once

#include "ports/NotificationCenter.h"

#include <QByteArray>

#include <variant>

namespace tarnwell::desktop {

/// What can be wrong with the arguments of a notification's signal.
enum class Malformation {
    Arguments, ///< not three strings
    UserInfo,  ///< neither empty nor a property list with a dictionary at its root
    Size       ///< more text than maximumNotificationText
};

/// Bytes of UTF-8 that a notification's three strings may have together. Reading the worst user
/// info of this size takes a few milliseconds and megabytes.
inline constexpr qsizetype maximumNotificationText = qsizetype(64) * 1024;

/// What is known of a notification before its user info is read.
struct NotificationEnvelope
{
    QString name;
    QString object;
    QByteArray userInfoText; ///< an XML property list, or empty

    qsizetype size() const; ///< as maximumNotificationText counts it
};

std::variant<ports::Notification, Malformation>
notificationOf(const NotificationEnvelope &envelope);

/// The three strings of a notification. User info that is no dictionary is left out.
NotificationEnvelope envelopeFor(const ports::Notification &notification);

} // namespace tarnwell::desktop
