#pragma once

#include <QStringList>

namespace tarnwell::foundation {

/// The user's languages as BCP 47 tags, the preferred one first. They follow the default locale.
QStringList userLanguages();

/// The names that a bundle's folder for one of these languages may have, without ".lproj", best
/// first: "pt-BR" gives "pt_BR", "pt-BR", "pt" and the English name of the language.
QStringList localizationNames(const QStringList &languages);

/// The suffixes that a localised key of a desktop entry may have for these languages, best first:
/// "sr-Latn-RS" gives "sr_RS@latin", "sr@latin", "sr_RS" and "sr".
QStringList desktopEntryLocales(const QStringList &languages);

} // namespace tarnwell::foundation
