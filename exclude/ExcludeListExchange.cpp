#include "exclude/ExcludeListExchange.h"

#include "exclude/ExcludeRecord.h"
#include "foundation/ForeignText.h"
#include "foundation/plist/PropertyList.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSet>

#include <array>

namespace tarnwell::exclude {

using namespace Qt::StringLiterals;

namespace {

constexpr auto formatKey = "Format"_L1;
constexpr auto formatName = "com.varnit.tarnwell.excludelist"_L1;
constexpr auto versionKey = "Version"_L1;
constexpr int version = 1;
constexpr auto listKey = "ExcludeList"_L1;

/// So many names are told one by one; more would fill the screen.
constexpr qsizetype mostNames = 12;
constexpr qsizetype longestName = 30;

QString translated(const char *text)
{
    return QCoreApplication::translate("ExcludeListExchange", text);
}

bool isOwn(const plist::Value &element)
{
    const plist::Dictionary &dictionary = element.toDictionary();
    return !dictionary.value(record::identifier).toStringView().isEmpty() &&
           !isPredefined(dictionary);
}

QString nameOf(const plist::Dictionary &dictionary)
{
    if (QString name = dictionary.value(record::displayName).toString(); !name.isEmpty())
        return name;
    const QString path = dictionary.value(record::path).toString();
    return path.isEmpty() ? dictionary.value(record::identifier).toString()
                          : QFileInfo(path).completeBaseName();
}

struct Field
{
    QLatin1StringView key;
    plist::Value::Type type;
};

constexpr std::array fields{
    Field{record::identifier, plist::Value::Type::String},
    Field{record::path, plist::Value::Type::String},
    Field{record::displayName, plist::Value::Type::String},
    Field{record::comment, plist::Value::Type::String},
    Field{record::aliasRecord, plist::Value::Type::Data},
    Field{record::hardcoded, plist::Value::Type::Boolean},
};

/// What is wrong with a record; empty when nothing is.
QString faultOf(const plist::Value &element)
{
    if (!element.isDictionary())
        return translated("it is not a record");
    const plist::Dictionary &dictionary = element.toDictionary();
    for (const Field &field : fields) {
        const plist::Value &value = dictionary.value(field.key);
        if (!value.isNull() && value.type() != field.type)
            return translated("the value of \"%1\" is of the wrong kind").arg(field.key);
    }
    if (dictionary.value(record::identifier).toStringView().isEmpty())
        return translated("it has no \"%1\"").arg(record::identifier);
    if (isPredefined(dictionary))
        return translated("it is marked as predefined");
    return {};
}

/// What a record has in a file and in the list after an import. Values that no record has stay
/// behind, hand-edited ones of the wrong kind too, and so does the mark of predefined ones.
plist::Dictionary cleaned(const plist::Dictionary &dictionary)
{
    plist::Dictionary result;
    for (const Field &field : fields) {
        const plist::Value &value = dictionary.value(field.key);
        if (value.type() == field.type && field.key != record::hardcoded)
            result.insert(field.key, value);
    }
    return result;
}

QString listed(const QStringList &names)
{
    QStringList shown;
    for (const QString &name : names.first(std::min(names.size(), mostNames)))
        shown.append(foundation::shownText(name, longestName));
    if (names.size() <= mostNames)
        return shown.join(", "_L1);
    return translated("%1 and %2 more")
        .arg(shown.join(", "_L1), QString::number(names.size() - mostNames));
}

} // namespace

bool hasRecordsToExport(const plist::Array &stored)
{
    return std::any_of(stored.begin(), stored.end(), isOwn);
}

QByteArray exportedList(const plist::Array &stored)
{
    plist::Array own;
    for (const plist::Value &element : stored) {
        if (isOwn(element))
            own.append(plist::Value(cleaned(element.toDictionary())));
    }
    if (own.isEmpty())
        return {};
    const plist::Dictionary file{
        {formatKey, formatName}, {versionKey, version}, {listKey, plist::Value(own)}};
    return plist::write(plist::Value(file), plist::Format::Xml);
}

std::optional<plist::Array> readExportedList(const QByteArray &bytes, QString *errorMessage)
{
    const auto refuse = [errorMessage](const QString &message) {
        *errorMessage = message;
        return std::nullopt;
    };
    plist::ReadError error;
    const plist::Value file = plist::read(bytes, &error);
    if (file.isNull())
        return refuse(translated("The file is damaged: %1").arg(error.message));
    const plist::Dictionary &contents = file.toDictionary();
    if (contents.value(formatKey) != plist::Value(formatName))
        return refuse(translated("The file holds no exclude list that was exported from here."));
    if (contents.value(versionKey) != plist::Value(version))
        return refuse(translated("The file was written by a version that is not known here."));
    if (!contents.value(listKey).isArray())
        return refuse(translated("The file is damaged: it has no list of applications."));
    const plist::Array &list = contents.value(listKey).toArray();
    plist::Array records;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (const QString fault = faultOf(list.at(i)); !fault.isEmpty())
            return refuse(translated("The file is damaged: entry %1 cannot be used, because %2.")
                              .arg(QString::number(i + 1), fault));
        records.append(plist::Value(cleaned(list.at(i).toDictionary())));
    }
    return records;
}

ImportPlan planImport(const plist::Array &imported, const plist::Array &stored)
{
    QSet<QString> known;
    for (const plist::Value &element : stored) {
        if (const plist::Value &id = element.toDictionary().value(record::identifier);
            id.isString())
            known.insert(id.toString());
    }
    ImportPlan plan;
    for (const plist::Value &element : imported) {
        const plist::Dictionary &dictionary = element.toDictionary();
        const QString id = dictionary.value(record::identifier).toString();
        if (known.contains(id)) {
            plan.alreadyListed.append(nameOf(dictionary));
            continue;
        }
        known.insert(id);
        plan.added.append(element);
        plan.addedNames.append(nameOf(dictionary));
    }
    return plan;
}

void importRecords(ports::Preferences &preferences, const QString &domain,
                   const plist::Array &records)
{
    preferences.updateAppValue(prefs::keys::excludeList, domain,
                               [&](const plist::Value &present) -> std::optional<plist::Value> {
                                   plist::Array list = present.toArray();
                                   const plist::Array missing = planImport(records, list).added;
                                   if (missing.isEmpty())
                                       return std::nullopt;
                                   for (const plist::Value &added : missing)
                                       list.append(added);
                                   return list;
                               });
}

QString description(const ImportPlan &plan)
{
    QStringList sentences;
    if (plan.addedNames.isEmpty())
        sentences.append(translated("Nothing would be added."));
    else
        sentences.append(
            translated("These applications will be added: %1.").arg(listed(plan.addedNames)));
    if (!plan.alreadyListed.isEmpty())
        sentences.append(translated("These are on the list already and stay as they are: %1.")
                             .arg(listed(plan.alreadyListed)));
    return sentences.join(u"\n\n"_s);
}

} // namespace tarnwell::exclude
