#include "foundation/Languages.h"

#include <QLocale>

namespace tarnwell::foundation {

namespace {

struct LanguageTag
{
    QString language;
    QString script;
    QString territory;
};

LanguageTag parseTag(const QString &tag)
{
    const QStringList parts = QString(tag).replace(u'_', u'-').split(u'-');
    LanguageTag result;
    result.language = parts.value(0).toLower();
    for (qsizetype i = 1; i < parts.size(); ++i) {
        const QString &part = parts[i];
        if (part.size() == 4 && result.script.isEmpty())
            result.script = part.toLower();
        else if ((part.size() == 2 || part.size() == 3) && result.territory.isEmpty())
            result.territory = part.toUpper();
    }
    return result;
}

/// Bundles made before language codes were usual name their folders in English.
QString englishName(const QString &language)
{
    static constexpr struct
    {
        const char *code;
        const char *name;
    } names[] = {
        {"da", "Danish"},    {"de", "German"}, {"en", "English"},   {"es", "Spanish"},
        {"fi", "Finnish"},   {"fr", "French"}, {"it", "Italian"},   {"ja", "Japanese"},
        {"nb", "Norwegian"}, {"nl", "Dutch"},  {"no", "Norwegian"}, {"pt", "Portuguese"},
        {"sv", "Swedish"},
    };
    for (const auto &entry : names) {
        if (language == QLatin1String(entry.code))
            return QLatin1String(entry.name);
    }
    return {};
}

void appendOnce(QStringList &list, const QString &item)
{
    if (!item.isEmpty() && !list.contains(item))
        list.append(item);
}

} // namespace

QStringList userLanguages()
{
    return QLocale().uiLanguages();
}

QStringList localizationNames(const QStringList &languages)
{
    QStringList names;
    for (const QString &tag : languages) {
        const LanguageTag parsed = parseTag(tag);
        if (parsed.language.isEmpty() || parsed.language == u'c')
            continue;
        if (!parsed.territory.isEmpty()) {
            appendOnce(names, parsed.language + u'_' + parsed.territory);
            appendOnce(names, parsed.language + u'-' + parsed.territory);
        }
        if (!parsed.script.isEmpty()) {
            QString script = parsed.script;
            script[0] = script[0].toUpper();
            appendOnce(names, parsed.language + u'-' + script);
        }
        appendOnce(names, parsed.language);
        appendOnce(names, englishName(parsed.language));
    }
    return names;
}

QStringList desktopEntryLocales(const QStringList &languages)
{
    QStringList locales;
    for (const QString &tag : languages) {
        const LanguageTag parsed = parseTag(tag);
        if (parsed.language.isEmpty() || parsed.language == u'c')
            continue;
        const QString modifier = parsed.script == QLatin1String("latn") ? QStringLiteral("@latin")
                                 : parsed.script == QLatin1String("cyrl")
                                     ? QStringLiteral("@cyrillic")
                                     : QString();
        const QString withTerritory =
            parsed.territory.isEmpty() ? QString() : parsed.language + u'_' + parsed.territory;
        if (!modifier.isEmpty() && !withTerritory.isEmpty())
            appendOnce(locales, withTerritory + modifier);
        if (!modifier.isEmpty())
            appendOnce(locales, parsed.language + modifier);
        appendOnce(locales, withTerritory);
        appendOnce(locales, parsed.language);
    }
    return locales;
}

} // namespace tarnwell::foundation
