#pragma once

#include <QLocale>
#include <QString>

namespace tarnwell::compositions {

/// Formats by a pattern such as "#,##0.00" or "0 %": 0 is a digit that always shows, # one that
/// shows when there is something to show, and what stands before and after is copied.
QString formatNumber(double number, QStringView pattern, const QLocale &locale);

} // namespace tarnwell::compositions
