#include "foundation/plist/DateText.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tarnwell::plist::detail {

namespace {

using namespace Qt::StringLiterals;
using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr qint64 secondsPerDay = 86'400;
constexpr sys_days epoch = year_month_day(std::chrono::year(2001) / 1 / 1);
constexpr sys_days firstDay = year_month_day(std::chrono::year(0) / 1 / 1);
constexpr sys_days lastDay = year_month_day(std::chrono::year(9999) / 12 / 31);
constexpr auto earliest = double((firstDay - epoch).count() * secondsPerDay);
constexpr auto latest = double((lastDay - epoch).count() * secondsPerDay + secondsPerDay - 1);

QString digits(qint64 number, int width)
{
    return QString::number(number).rightJustified(width, u'0');
}

/// Takes so many digits, and then this character, off the front of a text; -1 if it has none such.
int takeNumber(QStringView &text, int width, char16_t after)
{
    if (text.size() <= width || text[width] != after)
        return -1;
    int number = 0;
    for (const QChar digit : text.first(width)) {
        if (digit < u'0' || digit > u'9')
            return -1;
        number = number * 10 + (digit.unicode() - u'0');
    }
    text = text.sliced(width + 1);
    return number;
}

} // namespace

QString dateText(double absoluteTime)
{
    if (std::isnan(absoluteTime))
        absoluteTime = 0.0;
    const auto seconds = qint64(std::floor(std::clamp(absoluteTime, earliest, latest)));
    const auto day = std::chrono::floor<days>(std::chrono::seconds(seconds));
    const qint64 time = seconds - day.count() * secondsPerDay;
    const year_month_day date = epoch + day;
    return digits(int(date.year()), 4) + u'-' + digits(unsigned(date.month()), 2) + u'-' +
           digits(unsigned(date.day()), 2) + u'T' + digits(time / 3600, 2) + u':' +
           digits(time / 60 % 60, 2) + u':' + digits(time % 60, 2) + u'Z';
}

std::optional<double> parseDate(QStringView text)
{
    const int year = takeNumber(text, 4, u'-');
    const int month = takeNumber(text, 2, u'-');
    const int day = takeNumber(text, 2, u'T');
    const int hour = takeNumber(text, 2, u':');
    const int minute = takeNumber(text, 2, u':');
    const bool hasFraction = text.size() > 4 && text[2] == u'.' && text.endsWith(u'Z');
    const int second = takeNumber(text, 2, hasFraction ? u'.' : u'Z');
    if (year < 0 || month < 1 || day < 1 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 60)
        return std::nullopt;
    const year_month_day date = std::chrono::year(year) / month / day;
    if (!date.ok())
        return std::nullopt;

    double fraction = 0.0;
    if (hasFraction) {
        const QString decimals = "0."_L1 + text.chopped(1).toString();
        bool isNumber = std::all_of(decimals.begin() + 2, decimals.end(),
                                    [](QChar c) { return c >= u'0' && c <= u'9'; });
        if (isNumber)
            fraction = decimals.toDouble(&isNumber);
        if (!isNumber)
            return std::nullopt;
    } else if (!text.isEmpty()) {
        return std::nullopt;
    }
    const qint64 days = (sys_days(date) - epoch).count();
    return double(days * secondsPerDay + hour * 3600 + minute * 60 + second) + fraction;
}

} // namespace tarnwell::plist::detail
