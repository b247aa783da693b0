#pragma once

#include <QStringList>
#include <QTranslator>

#include <memory>
#include <vector>

namespace tarnwell::pane {

/// The pane's texts in the first of the user's languages (BCP 47 tags) that it speaks, and the
/// toolkit's own texts in the same one where they are installed. Nothing where that language is
/// English, which the texts in the code are.
std::vector<std::unique_ptr<QTranslator>>
loadCatalogues(const QStringList &languages, const QString &folder, const QString &toolkitFolder);

} // namespace tarnwell::pane
