#include "compositions/drawing/Canvas.h"
#include "compositions/evaluator/Context.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <array>
#include <set>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

enum LightingInput { Ambient, Specular, Shininess, FirstLight };
enum LightInput { LightColor, LightX, LightY, LightZ, Attenuation, InputsPerLight };

constexpr std::array namesPerLight{"color_"_L1, "positionX_"_L1, "positionY_"_L1, "positionZ_"_L1,
                                   "attenuation_"_L1};

/// The numbers of the lights that the file speaks of; counted from 1 when it only says how many.
std::set<int> lightNumbers(const NodeDescription &description, const PortList &ports)
{
    std::set<int> numbers;
    for (const QString &key : ports.mentionedInputs()) {
        for (const QLatin1StringView name : namesPerLight) {
            bool isNumber = false;
            const int number =
                QStringView(key).mid(std::min(name.size(), key.size())).toInt(&isNumber);
            if (key.startsWith(name) && isNumber && number >= 0 && number < limits::countedPorts) {
                numbers.insert(number);
            }
        }
    }
    const int count = std::max(countSetting(description, "lightCount"_L1),
                               countSetting(description, "numberOfLights"_L1));
    if (numbers.empty()) {
        for (int i = 1; i <= count; ++i) {
            numbers.insert(i);
        }
    }
    return numbers;
}

void addLightPorts(const NodeDescription &description, PortList &ports)
{
    constexpr std::array positions{-1.0, 1.0, 1.0};
    for (const int number : lightNumbers(description, ports)) {
        for (size_t i = 0; i < namesPerLight.size(); ++i) {
            const QString key = namesPerLight[i] + QString::number(number);
            if (i == LightColor) {
                ports.addInput(key, Type::Color, Color{1.0, 1.0, 1.0, 1.0});
            } else {
                ports.addInput(key, Type::Number, i == Attenuation ? 0.0 : positions[i - LightX]);
            }
        }
    }
}

/// Lights shine where they stand in the surroundings of the macro, on everything within it that has
/// a surface.
void surroundByLight(Context &context, Canvas &canvas, const std::function<void()> &drawChildren)
{
    auto lighting = std::make_shared<Lighting>();
    lighting->ambient = context.color(Ambient);
    lighting->specular = context.number(Specular);
    lighting->shininess = context.number(Shininess);
    lighting->hasTwoSides = flagSetting(context.description(), "lightTwoSides"_L1);
    for (int i = FirstLight; i + InputsPerLight <= context.inputCount() &&
                             context.inputKey(i).startsWith(namesPerLight[LightColor]);
         i += InputsPerLight) {
        const QVector3D position(float(context.number(i + LightX)),
                                 float(context.number(i + LightY)),
                                 float(context.number(i + LightZ)));
        lighting->lights.push_back({.color = context.color(i + LightColor),
                                    .position = canvas.model().map(position),
                                    .attenuation = std::max(context.number(i + Attenuation), 0.0)});
    }
    canvas.setLighting(lighting);
    drawChildren();
}

constexpr std::array lightingInputs{PortDefinition{"inputAmbientColor"_L1, Type::Color, 0.1},
                                    PortDefinition{"inputObjectSpecular"_L1, Type::Number, 0.5},
                                    PortDefinition{"inputObjectShininess"_L1, Type::Number, 128.0}};

const std::array definitions{
    PatchDefinition{.className = "QCLighting"_L1,
                    .role = Role::Environment,
                    .inputs = lightingInputs,
                    .surround = surroundByLight,
                    .addPorts = addLightPorts},
};

} // namespace

std::span<const PatchDefinition> lightPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
