#include "update/FormattedDate.h"

#include "ports/Clock.h"

#include <QDateTime>
#include <QLocale>

#include <cmath>

namespace tarnwell::update {

namespace {

/// Ten thousand years; what lies further off is a mistake or mischief.
constexpr double mostSeconds = 10000 * 366 * 86400.0;

QLocale::FormatType formatOf(int style)
{
    return style <= 2 ? QLocale::ShortFormat : QLocale::LongFormat;
}

} // namespace

std::optional<QString> QXCopyFormattedDate(const plist::Value &date, int dateStyle, int timeStyle)
{
    const double seconds = date.toDate().absoluteTime;
    if (!date.isDate() || !(std::abs(seconds) <= mostSeconds))
        return std::nullopt;
    const auto moment = QDateTime::fromMSecsSinceEpoch(
        qint64((seconds + ports::Clock::absoluteTimeIntervalSince1970) * 1000.0));
    const QLocale locale;
    // One format for both where they agree, as the locale's own way to join them.
    if (dateStyle != NoDateStyle && timeStyle != NoDateStyle &&
        formatOf(dateStyle) == formatOf(timeStyle))
        return locale.toString(moment, formatOf(dateStyle));
    QStringList parts;
    if (dateStyle != NoDateStyle)
        parts.append(locale.toString(moment.date(), formatOf(dateStyle)));
    if (timeStyle != NoDateStyle)
        parts.append(locale.toString(moment, locale.timeFormat(formatOf(timeStyle))));
    return parts.join(u' ');
}

} // namespace tarnwell::update
