#include "samples/updater/Options.h"

#include <QDir>

#include <algorithm>

namespace tarnwell::samples {

using namespace Qt::StringLiterals;

std::optional<UpdaterOptions> parseOptions(const QStringList &arguments,
                                           const QProcessEnvironment &environment)
{
    UpdaterOptions options;
    if (arguments.size() == 1 && !arguments.front().startsWith(u'-')) {
        options.bundlePath = arguments.front();
    } else if (arguments.size() == 4 && arguments.at(0) == "-u"_L1 &&
               arguments.at(2) == "--bundle"_L1) {
        bool isNumber = false;
        arguments.at(1).toUInt(&isNumber);
        if (!isNumber)
            return std::nullopt;
        options.bundlePath = arguments.at(3);
    }
    if (options.bundlePath.isEmpty())
        return std::nullopt;
    options.home = environment.value(u"TARNWELL_HOME"_s, QDir::homePath());
    bool isNumber = false;
    const double step = environment.value(u"VARNIT_UPDATER_STEP"_s).toDouble(&isNumber);
    if (isNumber)
        options.step = std::clamp(step, 0.0, 60.0);
    return options;
}

} // namespace tarnwell::samples
