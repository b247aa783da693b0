#pragma once

#include "compositions/evaluator/Evaluator.h"
#include "compositions/model/Composition.h"
#include "foundation/plist/Array.h"
#include "foundation/plist/Dictionary.h"

#include <QStringList>

namespace tarnwell::compositions::test {

/// Writes compositions as their files do, in a few words.
class MacroBuilder
{
public:
    /// Adds a node. The inputs are its stored port values, the settings the rest of its state.
    MacroBuilder &node(const QString &className, const QString &key,
                       const plist::Dictionary &inputs = {}, const plist::Dictionary &settings = {},
                       const QString &identifier = {});
    /// Adds a macro, or an iterator, or whatever else has an inside.
    MacroBuilder &macro(const QString &className, const QString &key, const MacroBuilder &inside,
                        const plist::Dictionary &inputs = {},
                        const plist::Dictionary &settings = {});
    /// Joins "Node.port" to "Node.port".
    MacroBuilder &connect(const QString &from, const QString &to);
    /// Publishes "Node.port" under a key.
    MacroBuilder &input(const QString &key, const QString &port, const plist::Value &value = {});
    MacroBuilder &output(const QString &key, const QString &port);

    plist::Dictionary state() const;
    /// The whole file, with more of its keys if wanted.
    plist::Dictionary file(const plist::Dictionary &more = {}) const;
    std::shared_ptr<const Composition> read(const plist::Dictionary &more = {}) const;

private:
    void addPort(plist::Array &ports, const QString &key, const QString &port,
                 const plist::Value &value);

    plist::Array m_nodes;
    plist::Dictionary m_connections;
    plist::Array m_inputs;
    plist::Array m_outputs;
};

/// A patch alone: all its inputs are published under their own names, its outputs too.
class SinglePatch
{
public:
    SinglePatch(const QString &className, const plist::Dictionary &inputs,
                const QStringList &outputs, const plist::Dictionary &settings = {},
                const QString &identifier = {}, const EvaluatorOptions &options = {});

    SinglePatch &set(const QString &input, const Value &value);
    /// Runs a frame at that time and gives an output.
    Value at(double time, const QString &output);
    /// The first output.
    Value at(double time);
    double numberAt(double time) { return at(time).toNumber(); }

    Evaluator &evaluator() { return *m_evaluator; }

private:
    std::unique_ptr<Evaluator> m_evaluator;
    QStringList m_outputs;
};

plist::Dictionary color(double red, double green, double blue, double alpha = 1.0);

} // namespace tarnwell::compositions::test
