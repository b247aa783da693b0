#include "compositions/evaluator/Context.h"
#include "compositions/model/Structure.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"
#include "compositions/script/ScriptHost.h"
#include "compositions/script/ScriptSignature.h"
#include "compositions/script/ScriptValues.h"

#include <QJSEngine>

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

constexpr QLatin1StringView oldInputPrefix = "input_"_L1;
constexpr QLatin1StringView oldOutputPrefix = "output_"_L1;

QString scriptOf(const NodeDescription &description)
{
    return description.setting("script"_L1).toString().left(limits::scriptLength);
}

std::optional<ScriptSignature> signatureOf(const NodeDescription &description)
{
    return findSignature(scriptOf(description));
}

bool isOldMode(const NodeDescription &description)
{
    return !flagSetting(description, "newMode"_L1, signatureOf(description).has_value());
}

template <typename Add>
void addScriptPorts(const std::vector<ScriptPort> &ports, const Add &add)
{
    for (const ScriptPort &port : ports) {
        if (port.count < 0) {
            add(port.name, port.type);
        }
        for (int i = 0; i < port.count; ++i) {
            add(u"%1_%2"_s.arg(port.name).arg(i), port.type);
        }
    }
}

void addPorts(const NodeDescription &description, PortList &ports)
{
    if (isOldMode(description)) {
        for (int i = 0; i < ports.mentionedInputCount(oldInputPrefix); ++i) {
            ports.addInput(oldInputPrefix + QString::number(i), Type::Virtual);
        }
        for (int i = 0; i < ports.mentionedOutputCount(oldOutputPrefix); ++i) {
            ports.addOutput(oldOutputPrefix + QString::number(i), Type::Virtual);
        }
        return;
    }
    if (const auto signature = signatureOf(description)) {
        addScriptPorts(signature->inputs,
                       [&ports](const QString &key, PortType type) { ports.addInput(key, type); });
        addScriptPorts(signature->outputs,
                       [&ports](const QString &key, PortType type) { ports.addOutput(key, type); });
    }
}

/// Runs a script whenever one of its inputs changed. Its global variables live as long as it does.
class Script : public Patch
{
public:
    explicit Script(const NodeDescription &description)
        : m_isOld(isOldMode(description))
        , m_script(scriptOf(description))
    {
        if (!m_isOld) {
            if (auto signature = signatureOf(description)) {
                m_signature = std::move(*signature);
            }
        }
    }

    void run(Context &context) override
    {
        if (!m_engine && !m_hasFailed) {
            start(context);
        }
        for (int i = 0; i < context.inputCount(); ++i) {
            context.charge(Structure::weightOf(context.value(i)));
        }
        m_membersLeft = limits::scriptMembers;
        if (m_hasFailed || !context.scripts().supervise(*m_engine, [&] {
                return m_isOld ? runOld(context) : runNew(context);
            })) {
            for (int i = 0; i < context.outputCount(); ++i) {
                context.set(i, {});
            }
        }
    }

private:
    void start(Context &context)
    {
        m_engine = context.scripts().makeEngine();
        m_hasFailed = !m_engine;
        if (m_engine && !m_isOld) {
            m_hasFailed =
                m_signature.script.isEmpty() || !context.scripts().supervise(*m_engine, [this] {
                    return ScriptHost::evaluate(*m_engine, m_signature.script);
                });
            m_main = m_engine->globalObject().property(u"main"_s);
        }
    }

    QJSValue runNew(Context &context)
    {
        QJSValueList arguments;
        int input = 0;
        for (const ScriptPort &port : m_signature.inputs) {
            if (port.count < 0) {
                arguments.append(toScript(*m_engine, context.value(input++).converted(port.type)));
                continue;
            }
            QJSValue array = m_engine->newArray(uint(port.count));
            for (int i = 0; i < port.count; ++i) {
                array.setProperty(quint32(i),
                                  toScript(*m_engine, context.value(input++).converted(port.type)));
            }
            arguments.append(array);
        }
        QJSValue result = ScriptHost::call(*m_engine, m_main, arguments);
        if (result.isError() || !result.isObject()) {
            return result; // nothing returned: the outputs keep what they have
        }
        int output = 0;
        for (const ScriptPort &port : m_signature.outputs) {
            const QJSValue property = result.property(port.name);
            if (port.count < 0) {
                setOutput(context, output++, property, port.type);
            }
            for (int i = 0; i < port.count; ++i) {
                setOutput(context, output++, property.property(quint32(i)), port.type);
            }
        }
        return result;
    }

    void setOutput(Context &context, int output, const QJSValue &value, PortType type)
    {
        if (!value.isUndefined()) {
            context.set(output, fromScript(value, m_membersLeft).converted(type));
        }
    }

    QJSValue runOld(Context &context)
    {
        QJSValue global = m_engine->globalObject();
        QJSValue inputs = m_engine->newArray();
        QJSValue outputs = m_engine->newArray();
        for (int i = 0; i < context.inputCount(); ++i) {
            inputs.setProperty(quint32(i), toScript(*m_engine, context.value(i)));
        }
        for (int i = 0; i < context.outputCount(); ++i) {
            outputs.setProperty(quint32(i), toScript(*m_engine, context.output(i)));
        }
        global.setProperty(u"inputs"_s, inputs);
        global.setProperty(u"outputs"_s, outputs);
        QJSValue result = ScriptHost::evaluate(*m_engine, m_script);
        if (result.isError()) {
            return result;
        }
        outputs = global.property(u"outputs"_s);
        for (int i = 0; i < context.outputCount(); ++i) {
            context.set(i, fromScript(outputs.property(quint32(i)), m_membersLeft));
        }
        return {};
    }

    bool m_isOld;
    bool m_hasFailed = false;
    qint64 m_membersLeft = 0; ///< that this run may still put out
    QString m_script;
    ScriptSignature m_signature;
    std::unique_ptr<QJSEngine> m_engine;
    QJSValue m_main; // after the engine, so that it goes first
};

const std::array definitions{
    PatchDefinition{
        .className = "QCJavaScript"_L1, .make = makePatch<Script>, .addPorts = addPorts},
};

} // namespace

std::span<const PatchDefinition> scriptPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
