#include "compositions/reader/ValueDecoding.h"

#include "compositions/Limits.h"
#include "compositions/model/Structure.h"
#include "foundation/plist/Array.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

Value decode(const plist::Value &stored, int depth);

bool isColor(const plist::Dictionary &dictionary)
{
    return dictionary.contains("red"_L1) || dictionary.contains("green"_L1) ||
           dictionary.contains("blue"_L1);
}

Value decodeDictionary(const plist::Dictionary &dictionary, int depth)
{
    if (isColor(dictionary)) {
        const auto component = [&dictionary](QLatin1StringView name, double fallback) {
            const plist::Value &value = dictionary.value(name);
            const double number = value.isNumber() ? value.toDouble() : fallback;
            return std::isfinite(number) ? number : fallback;
        };
        return Color{component("red"_L1, 0.0), component("green"_L1, 0.0),
                     component("blue"_L1, 0.0), component("alpha"_L1, 1.0)};
    }
    QStringList keys;
    std::vector<Value> members;
    for (const auto &[key, value] : dictionary) {
        keys.append(key);
        members.push_back(decode(value, depth + 1));
    }
    return Structure::keyed(std::move(keys), std::move(members));
}

Value decode(const plist::Value &stored, int depth)
{
    if (depth > limits::structureDepth) {
        return {};
    }
    switch (stored.type()) {
    case plist::Value::Type::Boolean:
        return stored.toBool();
    case plist::Value::Type::Integer:
        // Reals may be stored as integers, so a negative one is certainly no index.
        return stored.toInteger() >= 0 ? Value::index(stored.toInteger())
                                       : Value(double(stored.toInteger()));
    case plist::Value::Type::Real:
        return std::isnan(stored.toDouble()) ? 0.0 : stored.toDouble();
    case plist::Value::Type::String:
        return stored.toString();
    case plist::Value::Type::Date:
        return stored.toDate().absoluteTime;
    case plist::Value::Type::Data:
        return decodeArchivedStructure(plist::read(stored.toData()));
    case plist::Value::Type::Array: {
        std::vector<Value> members;
        for (const plist::Value &member : stored.toArray()) {
            members.push_back(decode(member, depth + 1));
        }
        return Structure::list(std::move(members));
    }
    case plist::Value::Type::Dictionary:
        return decodeDictionary(stored.toDictionary(), depth);
    case plist::Value::Type::Null:
    case plist::Value::Type::Uid:
        break;
    }
    return {};
}

/// Follows the references of a keyed archive from its root. Cycles end at the depth limit, and
/// sharing that would multiply ends at the limit of visits.
class Unarchiver
{
public:
    explicit Unarchiver(const plist::Array &objects)
        : m_objects(objects)
    {}

    Value object(const plist::Value &reference, int depth)
    {
        if (depth > limits::structureDepth || --m_visitsLeft < 0) {
            return {};
        }
        if (!reference.isUid()) {
            return reference.isDictionary() || reference.isArray() ? Value()
                                                                   : decode(reference, depth);
        }
        const quint64 index = reference.toUid().value;
        if (index >= quint64(m_objects.size())) {
            return {};
        }
        const plist::Value &found = m_objects.at(qsizetype(index));
        if (found.isString()) {
            return found.toString() == "$null"_L1 ? Value() : Value(found.toString());
        }
        if (!found.isDictionary()) {
            return decode(found, depth);
        }
        return instance(found.toDictionary(), depth);
    }

private:
    Value instance(const plist::Dictionary &stored, int depth)
    {
        const QString name = className(stored.value("$class"_L1));
        if (name == "QCStructure"_L1) {
            return structure(stored, depth);
        }
        if (stored.contains("NS.objects"_L1)) {
            return collection(stored, depth);
        }
        if (stored.contains("NS.string"_L1)) {
            return object(stored.value("NS.string"_L1), depth + 1);
        }
        return {};
    }

    QString className(const plist::Value &reference) const
    {
        const quint64 index =
            reference.isUid() ? reference.toUid().value : quint64(m_objects.size());
        if (index >= quint64(m_objects.size())) {
            return {};
        }
        return m_objects.at(qsizetype(index)).toDictionary().value("$classname"_L1).toString();
    }

    /// Values and keys take turns under the names $0, $1, $2 …; without keys it is a list.
    Value structure(const plist::Dictionary &stored, int depth)
    {
        QStringList keys;
        std::vector<Value> members;
        bool hasKeys = false;
        const qint64 count =
            std::min<qint64>(stored.value("count"_L1).toInteger(), stored.size() / 2 + 1);
        for (qint64 i = 0; i < count; ++i) {
            members.push_back(object(stored.value(u"$%1"_s.arg(2 * i)), depth + 1));
            const Value key = object(stored.value(u"$%1"_s.arg(2 * i + 1)), depth + 1);
            hasKeys = hasKeys || !key.isNull();
            keys.append(key.toString());
        }
        return hasKeys ? Structure::keyed(std::move(keys), std::move(members))
                       : Structure::list(std::move(members));
    }

    Value collection(const plist::Dictionary &stored, int depth)
    {
        const plist::Array &objects = stored.value("NS.objects"_L1).toArray();
        const plist::Array &names = stored.value("NS.keys"_L1).toArray();
        QStringList keys;
        std::vector<Value> members;
        for (qsizetype i = 0; i < objects.size() && m_visitsLeft > 0; ++i) {
            members.push_back(object(objects.at(i), depth + 1));
            if (i < names.size()) {
                keys.append(object(names.at(i), depth + 1).toString());
            }
        }
        return qsizetype(members.size()) == keys.size()
                   ? Structure::keyed(std::move(keys), std::move(members))
                   : Structure::list(std::move(members));
    }

    const plist::Array &m_objects;
    int m_visitsLeft = 100'000;
};

} // namespace

Value decodeValue(const plist::Value &stored)
{
    return decode(stored, 0);
}

StructureRef decodeArchivedStructure(const plist::Value &archive)
{
    const plist::Dictionary &top = archive.toDictionary();
    const plist::Array &objects = top.value("$objects"_L1).toArray();
    if (objects.isEmpty()) {
        return {};
    }
    return Unarchiver(objects)
        .object(top.value("$top"_L1).toDictionary().value("root"_L1), 0)
        .toStructure();
}

} // namespace tarnwell::compositions
