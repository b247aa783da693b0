#include "compositions/evaluator/Context.h"
#include "compositions/patches/Families.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

/// Nobody moves a pointer over an effect, and no key that is pressed is meant for it: the devices
/// rest for ever.
void rest(Context &) {}

/// The keys are outputs that the file names.
void addKeyPorts(const NodeDescription &, PortList &ports)
{
    for (const QString &key : ports.mentionedOutputs()) {
        if (key.startsWith("key_"_L1)) {
            ports.addOutput(key, Type::Boolean);
        }
    }
}

constexpr std::array mouseOutputs{PortDefinition{"outputX"_L1, Type::Number},
                                  PortDefinition{"outputY"_L1, Type::Number},
                                  PortDefinition{"outputButton1"_L1, Type::Boolean},
                                  PortDefinition{"outputButton2"_L1, Type::Boolean},
                                  PortDefinition{"outputButton3"_L1, Type::Boolean}};

const std::array definitions{
    PatchDefinition{.className = "QCMouse"_L1, .outputs = mouseOutputs, .run = rest},
    PatchDefinition{.className = "QCKeyboard"_L1, .run = rest, .addPorts = addKeyPorts},
};

} // namespace

std::span<const PatchDefinition> devicePatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
