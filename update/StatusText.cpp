#include "update/StatusText.h"

namespace tarnwell::update {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostCharacters = 240;

} // namespace

QString formatted(const QString &format, const QStringList &texts)
{
    const QStringList parts = format.split("%@"_L1);
    QString whole = parts.first();
    for (qsizetype i = 1; i < parts.size(); ++i)
        whole += texts.value(i - 1) + parts.at(i);
    return whole;
}

QString shortStatus(const QString &status)
{
    // Cut before it is tidied: there may be megabytes of it.
    QString text = status.first(qMin(status.size(), 4 * mostCharacters)).simplified();
    if (text.size() <= mostCharacters && status.size() <= 4 * mostCharacters)
        return text;
    text.truncate(mostCharacters);
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    return text + u'…';
}

} // namespace tarnwell::update
