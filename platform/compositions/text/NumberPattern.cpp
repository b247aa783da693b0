#include "compositions/text/NumberPattern.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostDigits = 30;

struct Layout
{
    QString prefix;
    QString suffix;
    int leastInteger = 0;
    int leastFraction = 0;
    int mostFraction = 0;
    bool groups = false;
};

bool isPlaceholder(QChar c)
{
    return c == u'0' || c == u'#' || c == u',' || c == u'.';
}

Layout layoutOf(QStringView pattern)
{
    const auto isPart = [](QChar c) { return isPlaceholder(c); };
    const auto first = std::ranges::find_if(pattern, isPart);
    auto last = first;
    while (last != pattern.end() && isPart(*last)) {
        ++last;
    }
    Layout layout;
    layout.prefix = QStringView(pattern.begin(), first).toString();
    layout.suffix = QStringView(last, pattern.end()).toString();
    bool isFraction = false;
    for (auto it = first; it != last; ++it) {
        if (*it == u'.') {
            isFraction = true;
        } else if (*it == u',') {
            layout.groups = true;
        } else if (isFraction) {
            ++layout.mostFraction;
            layout.leastFraction += *it == u'0' ? 1 : 0;
        } else {
            layout.leastInteger += *it == u'0' ? 1 : 0;
        }
    }
    layout.leastInteger = std::min(layout.leastInteger, mostDigits);
    layout.mostFraction = std::min(layout.mostFraction, mostDigits);
    layout.leastFraction = std::min(layout.leastFraction, mostDigits);
    return layout;
}

} // namespace

QString formatNumber(double number, QStringView pattern, const QLocale &locale)
{
    // The part behind a semicolon is for negative numbers; they take the minus sign here.
    const Layout layout = layoutOf(pattern.left(pattern.indexOf(u';')));
    if (!std::isfinite(number)) {
        return u"NaN"_s;
    }
    const bool isPercent = layout.prefix.contains(u'%') || layout.suffix.contains(u'%');
    const QString digits =
        QString::number(std::abs(isPercent ? number * 100.0 : number), 'f', layout.mostFraction);
    const qsizetype point = digits.indexOf(u'.');
    QString integer = point < 0 ? digits : digits.left(point);
    QString fraction = point < 0 ? QString() : digits.mid(point + 1);
    while (fraction.size() > layout.leastFraction && fraction.endsWith(u'0')) {
        fraction.chop(1);
    }
    if (layout.leastInteger == 0 && integer == "0"_L1 && !fraction.isEmpty()) {
        integer.clear();
    }
    integer = integer.rightJustified(layout.leastInteger, u'0');
    if (layout.groups) {
        for (qsizetype i = integer.size() - 3; i > 0; i -= 3) {
            integer.insert(i, locale.groupSeparator());
        }
    }
    const bool isZero =
        std::ranges::all_of(integer + fraction, [](QChar c) { return !c.isDigit() || c == u'0'; });
    return (number < 0.0 && !isZero ? u"-"_s : QString()) + layout.prefix + integer +
           (fraction.isEmpty() ? QString() : locale.decimalPoint() + fraction) + layout.suffix;
}

} // namespace tarnwell::compositions
