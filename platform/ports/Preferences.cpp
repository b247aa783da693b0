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

bool Preferences::updateAppValue(const QString &key, const QString &domain, const Change &change)
{
    // Nobody writes the same key this often in a row.
    constexpr int attempts = 10;
    bool isStored = appSynchronize(domain);
    for (int i = 0; i < attempts; ++i) {
        const std::optional<plist::Value> changed = change(copyAppValue(key, domain));
        if (!changed)
            return isStored;
        setAppValue(key, *changed, domain);
        isStored = appSynchronize(domain);
        if (copyAppValue(key, domain) == *changed)
            return isStored;
    }
    return false;
}

void Preferences::setStoreHandler(const StoreHandler &handler)
{
    m_storeHandler = handler;
    for (auto it = m_states.cbegin(); handler && it != m_states.cend(); ++it) {
        if (*it != StoreState{})
            handler(it.key(), *it);
    }
}

void Preferences::reportStoring(const QString &domain, const StoreState &state)
{
    if (m_states.value(domain) == state)
        return;
    m_states.insert(domain, state);
    if (m_storeHandler)
        m_storeHandler(domain, state);
}

} // namespace tarnwell::ports
