#pragma once

#include <QDateTime>
#include <QLocale>

namespace tarnwell::compositions {

/// A point in time, in seconds since 1 January 2001, 00:00 UTC, as the clocks of a time zone show
/// it. Times beyond the year 9999 are held there.
QDateTime dateTimeFromAbsolute(double seconds, const QTimeZone &zone);

/// Formats by a Unicode date pattern such as "yyyy-MM-dd HH:mm:ss.SSS"; text between apostrophes
/// stands for itself.
QString formatDate(const QDateTime &dateTime, QStringView pattern, const QLocale &locale);

/// Formats by style: 0 nothing, 1 short, 2 medium, 3 long, 4 full, for the date and for the time.
QString formatDate(const QDateTime &dateTime, int dateStyle, int timeStyle, const QLocale &locale);

} // namespace tarnwell::compositions
