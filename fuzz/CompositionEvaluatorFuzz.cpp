// Any bytes as a composition that then runs for some frames, with its inputs changing. Compositions
// grow quickly from a few bytes: each byte adds a node, wires two of them, or publishes a port.

#include "compositions/evaluator/Evaluator.h"
#include "compositions/evaluator/PatchDefinition.h"
#include "compositions/filters/FilterTable.h"

#include <QCoreApplication>

namespace {

using namespace tarnwell::compositions;

/// Hands out the bytes one by one; zeros when they are used up.
class Bytes
{
public:
    Bytes(const uint8_t *data, size_t size)
        : m_data(data)
        , m_size(size)
    {}

    bool isEmpty() const { return m_position >= m_size; }
    int take() { return isEmpty() ? 0 : m_data[m_position++]; }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_position = 0;
};

Value someValue(Bytes &bytes)
{
    const int kind = bytes.take();
    switch (kind % 6) {
    case 0:
        return double(bytes.take()) - 100.0;
    case 1:
        return bytes.take() % 2 == 0;
    case 2:
        return QString(bytes.take() % 20, QChar(u'a'));
    case 3:
        return Color{bytes.take() / 255.0, 0.5, 0.25, bytes.take() / 255.0};
    case 4:
        return Value::index(bytes.take());
    default:
        return bytes.take() * 1e20;
    }
}

const PatchDefinition &someClass(Bytes &bytes)
{
    const auto families = patchFamilies();
    const auto family = families[size_t(bytes.take()) % families.size()];
    return family[size_t(bytes.take()) % family.size()];
}

QString someKey(Bytes &bytes)
{
    return QString::number(bytes.take() % 24);
}

QString somePort(Bytes &bytes, std::span<const PortDefinition> ports)
{
    const int choice = bytes.take();
    if (!ports.empty() && choice % 4 != 0) {
        return ports[size_t(choice) % ports.size()].key;
    }
    const char *const others[] = {"operand_1",
                                  "source_0",
                                  "source_1",
                                  "a",
                                  "_time",
                                  "_enable",
                                  "output",
                                  "input",
                                  "n",
                                  "Initial_n",
                                  "inputImage",
                                  "inputBackgroundImage",
                                  "inputRadius",
                                  "inputRectangle_X",
                                  "inputTransform_ScaleX",
                                  "inputTransform_Rotate",
                                  "image"};
    return QString::fromLatin1(others[size_t(choice) % std::size(others)]);
}

NodeDescription someNode(Bytes &bytes, int index, int depth);

std::shared_ptr<const GraphDescription> someGraph(Bytes &bytes, int depth)
{
    auto graph = std::make_shared<GraphDescription>();
    const int nodes = 1 + bytes.take() % 24;
    for (int i = 0; i < nodes && !bytes.isEmpty(); ++i) {
        graph->nodes.push_back(someNode(bytes, i, depth));
    }
    const int connections = bytes.take() % 64;
    for (int i = 0; i < connections && !bytes.isEmpty(); ++i) {
        const PatchDefinition &from = someClass(bytes);
        const PatchDefinition &to = someClass(bytes);
        graph->connections.push_back({someKey(bytes), somePort(bytes, from.outputs), someKey(bytes),
                                      somePort(bytes, to.inputs)});
    }
    for (int i = 0; i < 4; ++i) {
        const QString name = i % 2 == 0 ? QStringLiteral("n") : QStringLiteral("a");
        graph->inputs.push_back(
            {name, someKey(bytes), somePort(bytes, someClass(bytes).inputs), {}});
        graph->outputs.push_back(
            {name, someKey(bytes), somePort(bytes, someClass(bytes).outputs), {}});
    }
    return graph;
}

NodeDescription someNode(Bytes &bytes, int index, int depth)
{
    using tarnwell::plist::Dictionary;
    const PatchDefinition &definition = someClass(bytes);
    NodeDescription node;
    node.className = definition.className;
    node.key = QString::number(index);
    if (definition.className == QLatin1StringView("QCImageFilter")) {
        const auto filters = allFilters();
        node.identifier = filters[size_t(bytes.take()) % filters.size()].name;
    }
    node.timeBase = TimeBase(bytes.take() % 3);
    node.settings =
        Dictionary{{QStringLiteral("expression"), QStringLiteral("a*2+n")},
                   {QStringLiteral("format"), QStringLiteral("%@ 0.0 %@")},
                   {QStringLiteral("script"),
                    QStringLiteral("function (__number n) main (__number a) { return { n: a }; }")},
                   {QStringLiteral("sourceCode"),
                    QStringLiteral("kernel vec4 k(sampler image, float a, vec2 n)"
                                   "{ return sample(image, destCoord() + n) * a; }")},
                   {QStringLiteral("operationCount"), bytes.take() % 4},
                   {QStringLiteral("inputCount"), bytes.take() % 4},
                   {QStringLiteral("outputCount"), bytes.take() % 4}};
    for (int i = bytes.take() % 4; i > 0; --i) {
        node.portValues.insert(somePort(bytes, definition.inputs), someValue(bytes));
    }
    const bool isMacro = definition.role == Role::Environment ||
                         definition.role == Role::Iterator ||
                         definition.role == Role::RenderInImage;
    if (isMacro && depth < 6) {
        node.graph = someGraph(bytes, depth + 1);
    }
    return node;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    Bytes bytes(data, size);
    auto composition = std::make_shared<Composition>();
    composition->root.className = QStringLiteral("QCPatch");
    composition->root.graph = someGraph(bytes, 0);
    Evaluator evaluator(composition);
    for (int frame = 0; frame < 4; ++frame) {
        for (const QString &key : evaluator.inputKeys()) {
            evaluator.setInput(key, someValue(bytes));
        }
        evaluator.evaluate({.time = frame * 0.5, .systemTime = 1e8, .pixels = {64, 48}});
        for (const QString &key : evaluator.outputKeys()) {
            evaluator.outputValue(key).toString();
        }
    }
    return 0;
}
