#pragma once

#include "compositions/model/Image.h"

#include <QLocale>
#include <QSize>
#include <QTimeZone>

namespace tarnwell::compositions {

class Evaluator;
class ScriptHost;
struct Node;
struct NodeDescription;

/// Which pass of the innermost iterator is running.
struct Pass
{
    qint64 index = 0;
    qint64 count = 0;
};

/// What a patch sees while it runs: its inputs, already up to date, its outputs, its time and the
/// facts of the frame. Inputs and outputs are numbered as in the tables, added ports follow.
class Context
{
public:
    Context(Evaluator &evaluator, int node);

    int inputCount() const;
    int outputCount() const;
    const QString &inputKey(int input) const;
    const QString &outputKey(int output) const;
    bool isConnected(int input) const;

    const Value &value(int input) const;
    double number(int input) const { return value(input).toNumber(); }
    qint64 index(int input) const { return value(input).toIndex(); }
    bool boolean(int input) const { return value(input).toBoolean(); }
    QString string(int input) const { return value(input).toString(); }
    Color color(int input) const { return value(input).toColor(); }
    ImageRef image(int input) const { return value(input).toImage(); }
    StructureRef structure(int input) const { return value(input).toStructure(); }
    /// The value of an input of that name; none when there is no such input.
    const Value &value(QStringView key) const;

    const Value &output(int output) const;
    void set(int output, const Value &value);

    const NodeDescription &description() const;

    /// Seconds in the patch's own time base, never negative.
    double time() const;
    /// Seconds since 1 January 2001, 00:00 UTC.
    double systemTime() const;
    /// What feedback remembers from the frame before for an output; none at first.
    const Value &remembered(int output) const;
    /// Whether this is the first run of the patch since the composition started.
    bool isFirstRun() const;
    /// Pixels of what the patch's surroundings draw into.
    QSize destination() const;
    Pass pass() const;
    /// Takes one of the frame's iterations; false when none is left.
    bool takeIteration();
    /// Takes work from the frame's share, in runs of a simple patch; false when none is left.
    bool charge(qint64 work);

    /// The composition's seed, mixed with the one that the patch keeps in its settings.
    quint64 seed() const;
    const QLocale &locale() const;
    const QTimeZone &timeZone() const;
    const std::shared_ptr<ImageBudget> &imageBudget() const;
    /// Has the pixels of a rectangle computed in this frame, before anything that shows them. Null
    /// when the rectangle is empty or a limit forbids it.
    ImageRef computeImage(const ImageRecipe &recipe, const QRect &extent,
                          Image::Outside outside = Image::Outside::Nothing);
    ScriptHost &scripts() const;

private:
    Evaluator &m_evaluator;
    Node &m_node;
    int m_index;
};

} // namespace tarnwell::compositions
