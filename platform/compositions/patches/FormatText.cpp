#include "compositions/patches/FormatText.h"

#include "compositions/evaluator/Context.h"
#include "compositions/patches/Settings.h"

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

QStringList literalsOf(const NodeDescription &description)
{
    QStringList literals = description.setting("format"_L1).toString().split("%@"_L1);
    for (QString &literal : literals) {
        literal.replace("%%"_L1, "%"_L1);
    }
    return literals.mid(0, limits::countedPorts);
}

bool scansInsteadOfPrinting(const NodeDescription &description)
{
    return description.identifier == "scanner"_L1;
}

} // namespace

FormatText::FormatText(const NodeDescription &description)
    : m_scans(scansInsteadOfPrinting(description))
    , m_literals(literalsOf(description))
{}

void FormatText::addPorts(const NodeDescription &description, PortList &ports)
{
    const qsizetype places = literalsOf(description).size() - 1;
    const bool scans = scansInsteadOfPrinting(description);
    if (scans) {
        ports.addInput(u"inputString"_s, PortType::String);
    } else {
        ports.addOutput(u"outputString"_s, PortType::String);
    }
    for (qsizetype i = 1; i <= places; ++i) {
        const QString key = u"argument_%1"_s.arg(i);
        if (scans) {
            ports.addOutput(key, PortType::String);
        } else {
            ports.addInput(key, PortType::String);
        }
    }
}

void FormatText::run(Context &context)
{
    if (m_scans) {
        scan(context);
    } else {
        print(context);
    }
}

void FormatText::print(Context &context) const
{
    QString text = m_literals.value(0);
    for (qsizetype i = 1; i < m_literals.size() && text.size() <= limits::stringLength; ++i) {
        text += context.string(int(i) - 1) + m_literals[i];
    }
    context.set(0, text);
}

void FormatText::scan(Context &context) const
{
    const QString text = context.string(0);
    constexpr qsizetype charactersPerRun = 64;
    if (!context.charge(text.size() / charactersPerRun)) {
        return;
    }
    qsizetype position = text.startsWith(m_literals.value(0)) ? m_literals.value(0).size() : -1;
    for (qsizetype i = 1; i < m_literals.size(); ++i) {
        qsizetype end = -1;
        if (position >= 0) {
            end = m_literals[i].isEmpty() ? text.size() : text.indexOf(m_literals[i], position);
        }
        // From the first text that is missing on, the arguments stay empty.
        context.set(int(i) - 1, end < 0 ? QString() : text.mid(position, end - position));
        position = end < 0 ? -1 : end + m_literals[i].size();
    }
}

} // namespace tarnwell::compositions
