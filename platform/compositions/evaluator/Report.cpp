#include "compositions/evaluator/Report.h"

#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <set>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

/// Reports are for reading, so long structures are cut.
constexpr qsizetype mostMembers = 1'000;

QJsonValue finiteJson(double number)
{
    return std::isfinite(number) ? QJsonValue(number) : QJsonValue();
}

Value fromJson(const QJsonValue &json, int depth)
{
    if (depth > limits::structureDepth) {
        return {};
    }
    if (json.isBool()) {
        return json.toBool();
    }
    if (json.isDouble()) {
        return json.toDouble();
    }
    if (json.isString()) {
        return json.toString();
    }
    if (json.isArray()) {
        std::vector<Value> members;
        for (const QJsonValue &member : json.toArray()) {
            members.push_back(fromJson(member, depth + 1));
        }
        return Structure::list(std::move(members));
    }
    if (!json.isObject()) {
        return {};
    }
    const QJsonObject object = json.toObject();
    if (object.contains("red"_L1) && object.contains("green"_L1) && object.contains("blue"_L1)) {
        return Color{object.value("red"_L1).toDouble(), object.value("green"_L1).toDouble(),
                     object.value("blue"_L1).toDouble(), object.value("alpha"_L1).toDouble(1.0)};
    }
    QStringList keys;
    std::vector<Value> members;
    for (auto it = object.begin(); it != object.end(); ++it) {
        keys.append(it.key());
        members.push_back(fromJson(it.value(), depth + 1));
    }
    return Structure::keyed(std::move(keys), std::move(members));
}

QJsonArray describeInputs(const Evaluator &evaluator)
{
    QJsonArray inputs;
    for (const QString &key : evaluator.inputKeys()) {
        const PortAttributes attributes = evaluator.composition().portAttributes.value(key);
        QJsonObject input{{u"key"_s, key},
                          {u"type"_s, portTypeName(evaluator.inputType(key))},
                          {u"value"_s, toJson(evaluator.inputValue(key))}};
        if (!attributes.name.isEmpty()) {
            input.insert(u"name"_s, attributes.name);
        }
        if (!attributes.description.isEmpty()) {
            input.insert(u"description"_s, attributes.description);
        }
        inputs.append(input);
    }
    return inputs;
}

/// Images that a composition carries in formats that cannot be read here.
int countUnreadableImages(const Network &network)
{
    std::set<const void *> unreadable; // instances share their description
    for (const Node &node : network.nodes) {
        const QByteArray data = node.description->className == "QCImageLoader"_L1
                                    ? node.description->setting("imageData"_L1).toData()
                                    : QByteArray();
        if (!data.isEmpty() && !canDecodeImages(data)) {
            unreadable.insert(node.description);
        }
    }
    return int(unreadable.size());
}

QJsonObject describeAttributes(const Evaluator &evaluator)
{
    const Composition &composition = evaluator.composition();
    const auto &nodes = evaluator.network().nodes;
    const bool isTimeDependent = std::ranges::any_of(nodes, [](const Node &node) {
        return node.definition != nullptr && node.definition->traits.testFlag(Trait::TimeDependent);
    });
    return {{u"name"_s, composition.name},
            {u"description"_s, withoutMarkup(composition.description)},
            {u"copyright"_s, composition.copyright},
            {u"frameworkVersion"_s, composition.frameworkVersion},
            {u"protocols"_s, QJsonArray::fromStringList(composition.protocols)},
            {u"categories"_s, QJsonArray::fromStringList(composition.categories)},
            {u"aspectRatio"_s, composition.aspectRatio},
            {u"hasConsumers"_s, hasConsumers(evaluator.network())},
            {u"isTimeDependent"_s, isTimeDependent}};
}

} // namespace

QJsonValue toJson(const Value &value)
{
    switch (value.type()) {
    case PortType::Boolean:
        return value.toBoolean();
    case PortType::Index:
    case PortType::Number:
        return finiteJson(value.toNumber());
    case PortType::String:
        return value.toString();
    case PortType::Color: {
        const Color color = value.toColor();
        return QJsonObject{{u"red"_s, finiteJson(color.red)},
                           {u"green"_s, finiteJson(color.green)},
                           {u"blue"_s, finiteJson(color.blue)},
                           {u"alpha"_s, finiteJson(color.alpha)}};
    }
    case PortType::Image: {
        const QSize size = value.toImage()->pixelSize();
        return QJsonObject{{u"width"_s, size.width()}, {u"height"_s, size.height()}};
    }
    case PortType::Structure: {
        const StructureRef structure = value.toStructure();
        QJsonArray list;
        QJsonObject object;
        for (qsizetype i = 0; i < std::min(structure->count(), mostMembers); ++i) {
            const QJsonValue member = toJson(structure->members()[size_t(i)]);
            if (structure->isList()) {
                list.append(member);
            } else {
                object.insert(structure->key(i), member);
            }
        }
        return structure->isList() ? QJsonValue(list) : QJsonValue(object);
    }
    default:
        return {};
    }
}

Value fromJson(const QJsonValue &json)
{
    return fromJson(json, 0);
}

QString withoutMarkup(const QString &text)
{
    static const QRegularExpression tag(u"<[^<>]*>"_s);
    static const QRegularExpression blanks(u"\\s+"_s);
    QString plain = text;
    plain.replace(tag, u" "_s);
    plain.replace("&lt;"_L1, "<"_L1).replace("&gt;"_L1, ">"_L1).replace("&quot;"_L1, "\""_L1);
    plain.replace("&nbsp;"_L1, " "_L1).replace("&amp;"_L1, "&"_L1);
    return plain.replace(blanks, u" "_s).trimmed();
}

QJsonObject describe(const Evaluator &evaluator)
{
    std::set<QString> classes;
    for (const Node &node : evaluator.network().nodes) {
        if (!node.description->isVirtualInstance && !node.description->className.isEmpty()) {
            classes.insert(node.description->className);
        }
    }
    QJsonArray classNames;
    for (const QString &name : classes) {
        classNames.append(name);
    }
    std::set<QString> unsupported;
    QJsonArray details;
    for (const UnsupportedClass &entry : findUnsupportedClasses(evaluator.network())) {
        unsupported.insert(entry.className);
        QJsonObject detail{{u"class"_s, entry.className}, {u"nodes"_s, entry.nodes}};
        if (!entry.identifier.isEmpty()) {
            detail.insert(u"identifier"_s, entry.identifier);
        }
        details.append(detail);
    }
    QJsonArray unsupportedNames;
    for (const QString &name : unsupported) {
        unsupportedNames.append(name);
    }
    QStringList findings = evaluator.composition().findings + evaluator.network().findings;
    if (const int unreadable = countUnreadableImages(evaluator.network()); unreadable > 0) {
        findings.append(u"%1 images are of a format that cannot be read"_s.arg(unreadable));
    }
    QStringList outputs = evaluator.outputKeys();
    outputs.sort();
    return {{u"attributes"_s, describeAttributes(evaluator)},
            {u"inputs"_s, describeInputs(evaluator)},
            {u"outputs"_s, QJsonArray::fromStringList(outputs)},
            {u"classes"_s, classNames},
            {u"unsupported"_s, unsupportedNames},
            {u"unsupportedDetails"_s, details},
            {u"unknownPorts"_s, QJsonArray::fromStringList(findUnknownPorts(evaluator.network()))},
            {u"findings"_s, QJsonArray::fromStringList(findings)}};
}

} // namespace tarnwell::compositions
