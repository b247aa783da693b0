#include "pane/Catalogues.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

std::vector<std::unique_ptr<QTranslator>>
loadCatalogues(const QStringList &languages, const QString &folder, const QString &toolkitFolder)
{
    std::vector<std::unique_ptr<QTranslator>> catalogues;
    for (const QString &language : languages) {
        const QLocale locale(language);
        // English has no catalogue, but who prefers it must not get the next language instead.
        if (locale.language() == QLocale::English)
            break;
        auto own = std::make_unique<QTranslator>();
        if (!own->load(locale, u"tarnwell"_s, u"_"_s, folder))
            continue;
        catalogues.push_back(std::move(own));
        // Of file dialogs, and of the menus that text fields have.
        auto toolkits = std::make_unique<QTranslator>();
        if (toolkits->load(locale, u"qtbase"_s, u"_"_s, toolkitFolder))
            catalogues.push_back(std::move(toolkits));
        break;
    }
    return catalogues;
}

} // namespace tarnwell::pane
