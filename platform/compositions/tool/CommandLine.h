#pragma once

#include "compositions/model/Value.h"

#include <QSize>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace tarnwell::compositions {

/// What the command line of the player asks for.
struct CommandLine
{
    QString file;
    bool showsInfo = false;
    bool isUnconfined = false;
    double time = 0.0;
    QSize size{640, 480};
    std::vector<std::pair<QString, Value>> inputs;
    QString picture;                ///< the file to write; empty for none
    int frames = 0;                 ///< to measure; 0 for none
    std::optional<double> deadline; ///< of one frame, in seconds
};

extern const char *const usage;

/// Nothing, with the reason, when the arguments make no sense.
std::optional<CommandLine> parseCommandLine(const QStringList &arguments, QString *error);

} // namespace tarnwell::compositions
