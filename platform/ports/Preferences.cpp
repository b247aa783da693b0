#include "ports/Preferences.h"

namespace tarnwell::ports {

namespace {

void report(bool *valid, bool value)
{
    if (valid)
        *valid = value;
}

bool equalsAny(const QString &text, QLatin1StringView first, QLatin1StringView second)
{
    return text.compare(first, Qt::CaseInsensitive) == 0 ||
           text.compare(second, Qt::CaseInsensitive) == 0;
}

} // namespace

bool Preferences::appBooleanValue(const QString &key, const QString &domain, bool *valid) const
{
    const plist::Value value = copyAppValue(key, domain);
    report(valid, true);
    if (value.isBoolean())
        return value.toBool();
    if (value.isNumber())
        return value.toDouble() != 0.0;
    if (value.isString()) {
        const QString text = value.toString();
        if (equalsAny(text, QLatin1StringView("true"), QLatin1StringView("yes")))
            return true;
        if (equalsAny(text, QLatin1StringView("false"), QLatin1StringView("no")))
            return false;
    }
    report(valid, false);
    return false;
}

qint64 Preferences::appIntegerValue(const QString &key, const QString &domain, bool *valid) const
{
    const plist::Value value = copyAppValue(key, domain);
    report(valid, true);
    if (value.isNumber())
        return value.toInteger();
    if (value.isString()) {
        const QString text = value.toString();
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber, 10);
        // The conversion would let spaces around the digits pass.
        if (isNumber && !text.front().isSpace() && !text.back().isSpace())
            return number;
    }
    report(valid, false);
    return 0;
}

void Preferences::setStoreHandler(const StoreHandler &handler)
{
    m_storeHandler = handler;
    for (auto it = m_problems.cbegin(); handler && it != m_problems.cend(); ++it) {
        if (!it->isEmpty())
            handler(it.key(), *it);
    }
}

void Preferences::reportStoring(const QString &domain, const QString &problem)
{
    if (m_problems.value(domain) == problem)
        return;
    m_problems.insert(domain, problem);
    if (m_storeHandler)
        m_storeHandler(domain, problem);
}

} // namespace tarnwell::ports
