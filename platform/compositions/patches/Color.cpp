#include "compositions/evaluator/Context.h"
#include "compositions/maths/ColorSpace.h"
#include "compositions/maths/Easing.h"
#include "compositions/patches/Families.h"

#include <algorithm>
#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

void colorFromComponents(Context &context)
{
    const double alpha = context.number(3);
    if (context.description().identifier == "hsl"_L1) {
        context.set(0,
                    colorFromHsl({context.number(0), context.number(1), context.number(2)}, alpha));
    } else {
        context.set(0, Color{context.number(0), context.number(1), context.number(2), alpha});
    }
}

void colorToComponents(Context &context)
{
    const Color color = context.color(0);
    if (context.description().identifier == "hsl"_L1) {
        const Hsl hsl = hslFromColor(color);
        context.set(0, hsl.hue);
        context.set(1, hsl.saturation);
        context.set(2, hsl.luminosity);
    } else {
        context.set(0, color.red);
        context.set(1, color.green);
        context.set(2, color.blue);
    }
    context.set(3, color.alpha);
}

/// Turns the hue by degrees and scales the rest.
void transformColor(Context &context)
{
    const Color color = context.color(0);
    Hsl hsl = hslFromColor(color);
    hsl.hue += context.number(1) / 360.0;
    hsl.saturation *= context.number(2);
    hsl.luminosity *= context.number(3);
    context.set(0, colorFromHsl(hsl, std::clamp(color.alpha * context.number(4), 0.0, 1.0)));
}

void mixColors(Context &context)
{
    const Color a = context.color(0);
    const Color b = context.color(1);
    const double t = ease(context.index(3), std::clamp(context.number(2), 0.0, 1.0));
    const auto between = [t](double from, double to) { return from + (to - from) * t; };
    context.set(0, Color{between(a.red, b.red), between(a.green, b.green), between(a.blue, b.blue),
                         between(a.alpha, b.alpha)});
}

constexpr std::array fromInputs{PortDefinition{"input1"_L1, Type::Number, 1.0},
                                PortDefinition{"input2"_L1, Type::Number, 1.0},
                                PortDefinition{"input3"_L1, Type::Number, 1.0},
                                PortDefinition{"inputAlpha"_L1, Type::Number, 1.0}};
constexpr std::array colorOutput{PortDefinition{"outputColor"_L1, Type::Color}};
constexpr std::array colorInput{PortDefinition{"inputColor"_L1, Type::Color, 1.0}};
constexpr std::array toOutputs{
    PortDefinition{"output1"_L1, Type::Number}, PortDefinition{"output2"_L1, Type::Number},
    PortDefinition{"output3"_L1, Type::Number}, PortDefinition{"outputAlpha"_L1, Type::Number}};
constexpr std::array transformInputs{PortDefinition{"inputColor"_L1, Type::Color, 1.0},
                                     PortDefinition{"inputHue"_L1, Type::Number},
                                     PortDefinition{"inputSaturation"_L1, Type::Number, 1.0},
                                     PortDefinition{"inputLuminosity"_L1, Type::Number, 1.0},
                                     PortDefinition{"inputAlpha"_L1, Type::Number, 1.0}};
constexpr std::array mixerInputs{PortDefinition{"inputColor1"_L1, Type::Color, 1.0},
                                 PortDefinition{"inputColor2"_L1, Type::Color, 1.0},
                                 PortDefinition{"inputMix"_L1, Type::Number},
                                 PortDefinition{"inputInterpolation"_L1, Type::Index}};

const std::array definitions{
    PatchDefinition{.className = "QCColorFromComponents"_L1,
                    .inputs = fromInputs,
                    .outputs = colorOutput,
                    .run = colorFromComponents},
    PatchDefinition{.className = "QCColorToComponents"_L1,
                    .inputs = colorInput,
                    .outputs = toOutputs,
                    .run = colorToComponents},
    PatchDefinition{.className = "QCColorTransform"_L1,
                    .inputs = transformInputs,
                    .outputs = colorOutput,
                    .run = transformColor},
    PatchDefinition{.className = "QCColorMixer"_L1,
                    .inputs = mixerInputs,
                    .outputs = colorOutput,
                    .run = mixColors},
};

} // namespace

std::span<const PatchDefinition> colorPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
