#include "compositions/reader/CompositionReader.h"

#include "compositions/reader/GraphReader.h"
#include "compositions/reader/ValueDecoding.h"
#include "foundation/plist/Array.h"
#include "foundation/plist/PropertyList.h"

#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

std::shared_ptr<const Composition> fail(QString *error, const QString &reason)
{
    if (error != nullptr) {
        *error = reason;
    }
    return {};
}

/// Some files wrap the version in braces.
QString versionText(const plist::Value &stored)
{
    QString text = stored.isNumber() ? QString::number(stored.toDouble()) : stored.toString();
    if (text.startsWith(u'{') && text.endsWith(u'}')) {
        text = text.mid(1, text.size() - 2);
    }
    return text;
}

QStringList strings(const plist::Value &stored)
{
    QStringList result;
    if (stored.isString()) {
        result.append(stored.toString());
    }
    for (const plist::Value &entry : stored.toArray()) {
        if (entry.isString()) {
            result.append(entry.toString());
        }
    }
    return result;
}

void readAttributes(const plist::Dictionary &file, Composition &composition)
{
    composition.name = file.value("name"_L1).toString();
    composition.description = file.value("description"_L1).toString();
    composition.copyright = file.value("copyright"_L1).toString();
    composition.frameworkVersion = versionText(file.value("frameworkVersion"_L1));
    composition.protocols = strings(file.value("protocols"_L1));
    composition.categories =
        strings(file.value("categories"_L1)) + strings(file.value("category"_L1));
    const double ratio = file.value("aspectRatio"_L1).toDouble();
    composition.aspectRatio = std::isfinite(ratio) && ratio > 0.0 ? ratio : 0.0;
    for (const auto &[key, attributes] : file.value("portAttributes"_L1).toDictionary()) {
        const plist::Dictionary &stored = attributes.toDictionary();
        composition.portAttributes.insert(
            key, {stored.value("name"_L1).toString(), stored.value("description"_L1).toString()});
    }
}

} // namespace

std::shared_ptr<const Composition> readComposition(QByteArrayView file, QString *error)
{
    plist::ReadError readError;
    const plist::Value list = plist::read(file, &readError);
    return list.isNull() ? fail(error, readError.message) : readComposition(list, error);
}

std::shared_ptr<const Composition> readComposition(const plist::Value &list, QString *error)
{
    if (!list.isDictionary()) {
        return fail(error, u"the property list is no dictionary"_s);
    }
    const plist::Dictionary &file = list.toDictionary();
    const plist::Value &root = file.value("rootPatch"_L1);
    if (!root.isDictionary()) {
        return fail(error, u"there is no root patch"_s);
    }
    if (root.toDictionary().value("class"_L1).toString().isEmpty() &&
        !root.toDictionary().value("state"_L1).isDictionary()) {
        return fail(error, u"the root patch is empty"_s);
    }
    auto composition = std::make_shared<Composition>();
    readAttributes(file, *composition);
    GraphReader reader(file.value("virtualPatches"_L1).toDictionary());
    composition->root = reader.readNode(root.toDictionary());
    for (const auto &[key, value] : file.value("inputParameters"_L1).toDictionary()) {
        composition->root.portValues.insert(key, decodeValue(value));
    }
    composition->findings = reader.findings();
    return composition;
}

} // namespace tarnwell::compositions
