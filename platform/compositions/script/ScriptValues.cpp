#include "compositions/script/ScriptValues.h"

#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <QJSEngine>
#include <QJSValueIterator>

Q_DECLARE_METATYPE(tarnwell::compositions::ImageRef)

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

class Importer
{
public:
    explicit Importer(qint64 &left)
        : m_left(left)
    {}

    Value import(const QJSValue &value, int depth)
    {
        if (value.isBool()) {
            return value.toBool();
        }
        if (value.isNumber()) {
            return value.toNumber();
        }
        if (value.isString()) {
            // The engine puts texts together late: few characters there may be many here.
            const QString text = value.toString();
            m_left -= text.size() / Structure::charactersPerMember;
            return text;
        }
        if (!value.isObject() || value.isCallable() || value.isError() ||
            depth > limits::structureDepth) {
            return {};
        }
        if (const QVariant variant = value.isVariant() ? value.toVariant() : QVariant();
            variant.canConvert<ImageRef>()) {
            return variant.value<ImageRef>();
        }
        if (value.isDate()) {
            return value.toString();
        }
        return value.isArray() ? importArray(value, depth) : importObject(value, depth);
    }

private:
    /// An array may claim any length, so its members are counted as they are read.
    Value importArray(const QJSValue &value, int depth)
    {
        std::vector<Value> members;
        const quint32 length = value.property(u"length"_s).toUInt();
        for (quint32 i = 0; i < length && m_left > 0; ++i, --m_left) {
            members.push_back(import(value.property(i), depth + 1));
        }
        return Structure::list(std::move(members));
    }

    Value importObject(const QJSValue &value, int depth)
    {
        const QJSValue red = value.property(u"red"_s);
        if (red.isNumber() && value.hasOwnProperty(u"green"_s) && value.hasOwnProperty(u"blue"_s) &&
            value.hasOwnProperty(u"alpha"_s)) {
            return Color{red.toNumber(), value.property(u"green"_s).toNumber(),
                         value.property(u"blue"_s).toNumber(),
                         value.property(u"alpha"_s).toNumber()};
        }
        QStringList keys;
        std::vector<Value> members;
        for (QJSValueIterator it(value); it.hasNext() && m_left > 0; --m_left) {
            it.next();
            keys.append(it.name());
            members.push_back(import(it.value(), depth + 1));
        }
        return Structure::keyed(std::move(keys), std::move(members));
    }

    qint64 &m_left;
};

} // namespace

QJSValue toScript(QJSEngine &engine, const Value &value)
{
    switch (value.type()) {
    case PortType::Boolean:
        return value.toBoolean();
    case PortType::Index:
    case PortType::Number:
        return value.toNumber();
    case PortType::String:
        return value.toString();
    case PortType::Color: {
        const Color color = value.toColor();
        QJSValue object = engine.newObject();
        object.setProperty(u"red"_s, color.red);
        object.setProperty(u"green"_s, color.green);
        object.setProperty(u"blue"_s, color.blue);
        object.setProperty(u"alpha"_s, color.alpha);
        return object;
    }
    case PortType::Image:
        return engine.toScriptValue(QVariant::fromValue(value.toImage()));
    case PortType::Structure: {
        const StructureRef structure = value.toStructure();
        QJSValue object =
            structure->isList() ? engine.newArray(uint(structure->count())) : engine.newObject();
        for (qsizetype i = 0; i < structure->count(); ++i) {
            const QJSValue member = toScript(engine, structure->members()[size_t(i)]);
            if (structure->isList()) {
                object.setProperty(quint32(i), member);
            } else {
                object.setProperty(structure->key(i), member);
            }
        }
        return object;
    }
    default:
        return QJSValue(QJSValue::NullValue);
    }
}

Value fromScript(const QJSValue &value, qint64 &membersLeft)
{
    return membersLeft > 0 ? Importer(membersLeft).import(value, 0) : Value();
}

} // namespace tarnwell::compositions
