#include "exclude/ExcludeRows.h"

#include "exclude/ExcludeRecord.h"
#include "foundation/ForeignText.h"
#include "ports/FileManager.h"
#include "prefs/RecordSorting.h"

#include <algorithm>
#include <vector>

namespace tarnwell::exclude {

namespace {

foundation::StyledString cell(const QString &name, const QString &comment)
{
    foundation::StyledString text(name);
    text.append(QStringLiteral("\n"));
    text.append(comment, {foundation::FontStyle::SmallSystem, foundation::TextColor::Gray});
    return text;
}

} // namespace

plist::Array excludeRows(const plist::Array &stored, bool hidePredefined,
                         const ports::FileManager &fileManager)
{
    // The names are looked up once each, not once for every comparison.
    struct Row
    {
        QString name;
        const plist::Value *value;
    };
    std::vector<Row> rows;
    rows.reserve(size_t(stored.size()));
    for (const plist::Value &element : stored) {
        if (!element.isDictionary() || (hidePredefined && isPredefined(element.toDictionary())))
            continue;
        rows.push_back({prefs::displayNameOf(fileManager, element.toDictionary()), &element});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
        return prefs::titleCompare(a.name, b.name) < 0;
    });
    plist::Array result;
    result.reserve(stored.size());
    for (const Row &row : rows)
        result.append(*row.value);
    return result;
}

QString excludeName(const plist::Dictionary &dictionary, const ports::FileManager &fileManager)
{
    if (const plist::Value &name = dictionary.value(record::displayName); name.isString())
        return name.toString();
    const QString name = prefs::displayNameOf(fileManager, dictionary);
    return name.isEmpty() ? dictionary.value(record::identifier).toString() : name;
}

foundation::StyledString excludeCellValue(const plist::Dictionary &dictionary,
                                          const ports::FileManager &fileManager)
{
    return cell(excludeName(dictionary, fileManager), dictionary.value(record::comment).toString());
}

foundation::StyledString shownExcludeCell(const plist::Dictionary &dictionary,
                                          const ports::FileManager &fileManager)
{
    constexpr qsizetype longestLine = 200;
    return cell(foundation::shownText(excludeName(dictionary, fileManager), longestLine),
                foundation::shownText(dictionary.value(record::comment).toString(), longestLine));
}

} // namespace tarnwell::exclude
