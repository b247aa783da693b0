#include "compositions/text/DatePattern.h"

#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

/// Seconds from 1970 to 2001.
constexpr double epochOffset = 978'307'200.0;
/// About eight thousand years, in seconds.
constexpr double farthest = 2.5e11;

QString padded(int number, qsizetype width)
{
    return QString::number(number).rightJustified(width, u'0');
}

QString zoneName(const QDateTime &dateTime, qsizetype count)
{
    if (count < 4) {
        return dateTime.timeZoneAbbreviation();
    }
    return dateTime.timeZone().displayName(dateTime, QTimeZone::LongName, QLocale::c());
}

QString zoneOffset(const QDateTime &dateTime, qsizetype count)
{
    const int minutes = dateTime.offsetFromUtc() / 60;
    const QString sign = minutes < 0 ? u"-"_s : u"+"_s;
    const QString text = sign + padded(std::abs(minutes) / 60, 2) +
                         (count > 4 ? u":"_s : QString()) + padded(std::abs(minutes) % 60, 2);
    return count == 4 ? u"GMT"_s + text : text;
}

QString field(QChar letter, qsizetype count, const QDateTime &dateTime, const QLocale &locale)
{
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    const auto format = count == 4   ? QLocale::LongFormat
                        : count == 5 ? QLocale::NarrowFormat
                                     : QLocale::ShortFormat;
    switch (letter.unicode()) {
    case u'G':
        return u"AD"_s;
    case u'y':
    case u'Y':
    case u'u':
        return count == 2 ? padded(date.year() % 100, 2) : padded(date.year(), count);
    case u'Q':
        return padded((date.month() + 2) / 3, count);
    case u'M':
        return count >= 3 ? locale.monthName(date.month(), format) : padded(date.month(), count);
    case u'L':
        return count >= 3 ? locale.standaloneMonthName(date.month(), format)
                          : padded(date.month(), count);
    case u'w':
        return padded(date.weekNumber(), count);
    case u'd':
        return padded(date.day(), count);
    case u'D':
        return padded(date.dayOfYear(), count);
    case u'E':
    case u'c':
        return locale.dayName(date.dayOfWeek(), format);
    case u'e':
        return count >= 3 ? locale.dayName(date.dayOfWeek(), format)
                          : padded(date.dayOfWeek() % 7 + 1, count);
    case u'a':
        return time.hour() < 12 ? locale.amText() : locale.pmText();
    case u'h':
        return padded((time.hour() + 11) % 12 + 1, count);
    case u'H':
        return padded(time.hour(), count);
    case u'K':
        return padded(time.hour() % 12, count);
    case u'k':
        return padded(time.hour() == 0 ? 24 : time.hour(), count);
    case u'm':
        return padded(time.minute(), count);
    case u's':
        return padded(time.second(), count);
    case u'S':
        // A part of a second, cut off and not rounded: it must never show the next second's start.
        return padded(time.msec(), 3).leftJustified(count, u'0').left(count);
    case u'A':
        return padded(time.msecsSinceStartOfDay(), count);
    case u'z':
    case u'v':
        return zoneName(dateTime, count);
    case u'Z':
        return zoneOffset(dateTime, count);
    default:
        return QString(count, letter);
    }
}

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

} // namespace

QDateTime dateTimeFromAbsolute(double seconds, const QTimeZone &zone)
{
    const double held = std::isnan(seconds) ? 0.0 : std::clamp(seconds, -farthest / 5, farthest);
    return QDateTime::fromMSecsSinceEpoch(qint64(std::floor((held + epochOffset) * 1000.0)), zone);
}

QString formatDate(const QDateTime &dateTime, QStringView pattern, const QLocale &locale)
{
    constexpr qsizetype longestField = 32;
    QString text;
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern[i];
        if (c == u'\'') {
            // Two in a row are one apostrophe; otherwise all up to the next one is literal.
            const qsizetype end = pattern.indexOf(u'\'', i + 1);
            const QStringView literal = pattern.mid(i + 1, end < 0 ? -1 : end - i - 1);
            text += literal.isEmpty() && end >= 0 ? u"'"_s : literal.toString();
            i = end < 0 ? pattern.size() : end + 1;
        } else if (isAsciiLetter(c)) {
            qsizetype count = 1;
            while (i + count < pattern.size() && pattern[i + count] == c) {
                ++count;
            }
            text += field(c, std::min(count, longestField), dateTime, locale);
            i += count;
        } else {
            text += c;
            ++i;
        }
    }
    return text;
}

QString formatDate(const QDateTime &dateTime, int dateStyle, int timeStyle, const QLocale &locale)
{
    QStringList parts;
    if (dateStyle > 0) {
        const bool isLong = dateStyle >= 3;
        QString format = locale.dateFormat(isLong ? QLocale::LongFormat : QLocale::ShortFormat);
        parts.append(locale.toString(dateTime.date(), format));
    }
    if (timeStyle > 0) {
        parts.append(timeStyle == 1 ? locale.toString(dateTime.time(), QLocale::ShortFormat)
                                    : locale.toString(dateTime.time(), u"HH:mm:ss"_s));
    }
    return parts.join(u' ');
}

} // namespace tarnwell::compositions
