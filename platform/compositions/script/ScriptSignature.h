#pragma once

#include "compositions/model/Value.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tarnwell::compositions {

/// A parameter or a result of a script's main function.
struct ScriptPort
{
    QString name;
    PortType type = PortType::Virtual;
    int count = -1; ///< of an array, whose ports are name_0, name_1 …; -1 for a single port

    friend bool operator==(const ScriptPort &, const ScriptPort &) = default;
};

struct ScriptSignature
{
    std::vector<ScriptPort> inputs;
    std::vector<ScriptPort> outputs;
    QString script; ///< the text with the declaration put into the plain language
};

/// Finds "function (outputs) main (inputs)" with its typed names in a script. Nothing when there is
/// no such declaration, or it makes no sense.
std::optional<ScriptSignature> findSignature(const QString &script);

} // namespace tarnwell::compositions
