#pragma once

#include "compositions/drawing/Canvas.h"
#include "compositions/evaluator/Context.h"
#include "compositions/evaluator/Network.h"
#include "compositions/model/FrameRequest.h"
#include "compositions/model/Image.h"

#include <QLocale>
#include <QTimeZone>

#include <stop_token>

namespace tarnwell::compositions {

class ScriptHost;

/// What does not change while a composition runs.
struct EvaluatorOptions
{
    quint64 seed = 0;
    QLocale locale = QLocale::c();
    QTimeZone timeZone = QTimeZone::utc();
    /// Once somebody asks for it, on any thread, the frame that is being made ends early.
    std::stop_token stop = {};
};

/// Runs a composition frame by frame, without drawing anything itself.
///
/// The same composition, options, inputs and sequence of requests give the same frames, as long as
/// no script is cut short for the time it takes.
class Evaluator
{
public:
    explicit Evaluator(std::shared_ptr<const Composition> composition,
                       const EvaluatorOptions &options = {});
    ~Evaluator();
    Q_DISABLE_COPY_MOVE(Evaluator)

    const Composition &composition() const { return *m_network.composition; }
    const Network &network() const { return m_network; }

    /// Published inputs in the order of the file.
    QStringList inputKeys() const;
    bool hasInput(const QString &key) const;
    PortType inputType(const QString &key) const;
    Value inputValue(const QString &key) const;
    /// Takes effect with the next frame. False when there is no such input.
    bool setInput(const QString &key, const Value &value);

    /// Runs everything that draws and gives what it wants drawn.
    Frame evaluate(const FrameRequest &request);

    /// What the composition publishes, as of the last frame.
    QStringList outputKeys() const;
    Value outputValue(const QString &key) const;

    /// Whether a limit cut the last frame short.
    bool isExhausted() const { return m_evaluationsLeft <= 0; }

private:
    friend class Context;

    struct Scope
    {
        quint64 stamp = 1; ///< changes with every frame and every pass
        quint64 passId = 0;
        Pass pass;
    };
    struct PendingPull
    {
        int node;
        size_t nextInput;
        bool isSelected;
    };

    Node &node(int index) { return m_network.nodes[size_t(index)]; }
    const Value &inputValue(const Node &owner, int input) const;
    bool isFresh(const Node &candidate) const;

    /// Brings a node up to date, and before it everything that it needs.
    void pull(int index);
    bool pushSource(Node &owner, size_t input);
    void pullInputs(int index);
    void runNode(int index);
    Patch *patchOf(Node &owner);
    bool mustRun(const Node &owner) const;

    double timeOf(int index);
    double parentTime(const Node &owner);
    QSize destinationOf(const Node &owner);
    QSize sizeOfImage(int macro);

    bool isEnabled(int index);
    void drawNode(int index);
    void drawChildren(int macro);
    void iterate(int index);
    void renderInImage(int index);
    void passThrough(int index);
    ImageRef computeImage(const ImageRecipe &recipe, const QRect &extent, Image::Outside outside);
    void pullOutputs();
    void captureFeedback();
    bool takeIteration();
    /// Takes work from the frame's share; false when none is left.
    bool charge(qint64 work);
    /// Takes what a look at a node costs, and ends the frame if somebody asked for that.
    void chargeVisit(const Node &visited);
    void chargeFor(const Node &owner);

    EvaluatorOptions m_options;
    Network m_network;
    std::shared_ptr<ImageBudget> m_imageBudget;
    std::unique_ptr<ScriptHost> m_scripts;
    Canvas m_canvas;
    FrameRequest m_request;

    std::vector<Scope> m_scopes;
    std::vector<PendingPull> m_pending;
    std::vector<int> m_feedbackNodes; ///< that ran in this frame
    quint64 m_serial = 1;
    qint64 m_frameNumber = -1;
    int m_pullDepth = 0;
    int m_iterationsLeft = 0;
    qint64 m_evaluationsLeft = 0;
    size_t m_visitCost = 0; ///< that was not charged yet
    int m_passStates = 0;
};

} // namespace tarnwell::compositions
