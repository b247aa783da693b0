#pragma once

#include "compositions/model/Value.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/Value.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <memory>
#include <vector>

namespace tarnwell::compositions {

struct GraphDescription;

enum class TimeBase : quint8 { Parent, Local, External };

/// One patch of a composition as its file describes it.
struct NodeDescription
{
    QString className;
    QString key; ///< unique among its siblings
    QString identifier;
    TimeBase timeBase = TimeBase::Parent;
    /// Everything that the class keeps besides its ports: the "state" of the file.
    plist::Dictionary settings;
    /// Stored values of unconnected inputs, "_enable" and "_time" included.
    QHash<QString, Value> portValues;
    /// Inputs and outputs that were made while the composition was edited, named in the file.
    QStringList customInputs;
    QStringList customOutputs;
    /// Set for macros and for instances of virtual patches.
    std::shared_ptr<const GraphDescription> graph;
    bool isVirtualInstance = false;

    /// A setting of the class; no value when there is none.
    const plist::Value &setting(QLatin1StringView name) const;
};

struct ConnectionDescription
{
    QString sourceNode;
    QString sourcePort;
    QString destinationNode;
    QString destinationPort;
};

/// A port of a macro that stands for a port of one of its children.
struct PublishedPort
{
    QString key;
    QString node;
    QString port;
    /// The value that the macro repeats for its child's port; no value when it does not.
    Value value;
};

/// The inside of a macro.
struct GraphDescription
{
    std::vector<NodeDescription> nodes; ///< in the order of their layers, the lowest first
    std::vector<ConnectionDescription> connections;
    std::vector<PublishedPort> inputs;
    std::vector<PublishedPort> outputs;
};

/// What an inspector shows for a published port.
struct PortAttributes
{
    QString name;
    QString description;
};

/// A composition file, read but not yet running.
struct Composition
{
    QString name; ///< empty when the file gives none
    QString description;
    QString copyright;
    QString frameworkVersion;
    QStringList protocols;
    QStringList categories;
    double aspectRatio = 0.0; ///< width by height that the author worked with; 0 when unknown
    QHash<QString, PortAttributes> portAttributes;

    /// The root macro, whose portValues are the initial values of its published inputs.
    NodeDescription root;

    /// What was left out while reading, in words; empty for nearly every file.
    QStringList findings;
};

} // namespace tarnwell::compositions
