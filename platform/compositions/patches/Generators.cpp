#include "compositions/evaluator/Context.h"
#include "compositions/maths/Curve.h"
#include "compositions/maths/Easing.h"
#include "compositions/maths/Noise.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include "foundation/plist/Array.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

double finite(double number)
{
    return std::isfinite(number) ? number : 0.0;
}

/// The wave of a form from -1 to 1, at a part of its period from 0 to 1.
double wave(qint64 type, double part, double pulseWidth)
{
    switch (type) {
    case 0:
        return std::sin(2.0 * std::numbers::pi * part);
    case 1:
        return std::cos(2.0 * std::numbers::pi * part);
    case 2: {
        // Starts at 0 and goes up, as the sine does.
        const double shifted = part + 0.25 - std::floor(part + 0.25);
        return 1.0 - 4.0 * std::abs(shifted - 0.5);
    }
    case 3:
        return part < 0.5 ? 1.0 : -1.0;
    case 4:
        return 2.0 * part - 1.0;
    case 5:
        return 1.0 - 2.0 * part;
    case 6:
        return part < pulseWidth ? 1.0 : -1.0;
    default:
        return 0.0;
    }
}

void oscillate(Context &context)
{
    constexpr qint64 random = 7;
    const double period = context.number(1);
    const double amplitude = context.number(3);
    const double offset = context.number(4);
    if (period == 0.0) {
        context.set(0, offset);
        return;
    }
    const double turns = context.time() / period + context.number(2) / 360.0;
    const double turn = std::floor(turns);
    const double height = context.index(0) == random
                              ? 2.0 * hashToUnit(context.seed(), turn) - 1.0
                              : wave(context.index(0), turns - turn, context.number(5));
    context.set(0, finite(offset + amplitude * height));
}

void randomNumber(Context &context)
{
    const double least = context.number(0);
    const double most = context.number(1);
    const double time = context.time();
    const double part = flagSetting(context.description(), "usePerlinNoise"_L1)
                            ? 0.5 + 0.5 * gradientNoise(time, 0.5, 0.5, context.seed())
                            : hashToUnit(context.seed(), time);
    context.set(0, finite(least + (most - least) * part));
}

void noise(Context &context)
{
    context.set(
        0, gradientNoise(context.number(0), context.number(1), context.number(2), context.seed()));
}

/// Goes from one value to another along a standard curve, or along one that the author drew.
class Interpolation : public Patch
{
public:
    explicit Interpolation(const NodeDescription &description)
    {
        const int count = countSetting(description, "controlPointCount"_L1);
        const plist::Array &times = description.setting("controlPointTimes"_L1).toArray();
        const plist::Array &values = description.setting("controlPointValues"_L1).toArray();
        if (count == 0 || times.size() < count || values.size() < count) {
            return;
        }
        const auto edge = [&description](QLatin1StringView name, double fallback) {
            const plist::Value &value = description.setting(name);
            return value.isNumber() ? value.toDouble() : fallback;
        };
        std::vector<CurvePoint> points{{0.0, edge("controlPointStart"_L1, 0.0)}};
        for (int i = 0; i < count; ++i) {
            points.push_back({times.at(i).toDouble(), values.at(i).toDouble()});
        }
        points.push_back({1.0, edge("controlPointEnd"_L1, 1.0)});
        m_curve = Curve(std::move(points));
    }

    void run(Context &context) override
    {
        const double from = context.number(0);
        const double to = context.number(1);
        const double x = repeated(context.index(4), context.time(), context.number(2));
        const double part = m_curve.isEmpty() ? eased(context, x) : m_curve.valueAt(x);
        context.set(0, finite(from + (to - from) * part));
    }

private:
    /// A tension other than 0 lets the course overshoot its end, or start beyond its beginning.
    static double eased(Context &context, double x)
    {
        const double tension = context.number(3);
        const double part = ease(context.index(5), x);
        return tension == 0.0 ? part : part + tension * x * (1.0 - x) * (2.0 * x - 1.0);
    }

    Curve m_curve;
};

/// Tracks of key frames, one an output.
class TimeLine : public Patch
{
public:
    explicit TimeLine(const NodeDescription &description)
    {
        for (const plist::Value &track : tracksOf(description)) {
            std::vector<CurvePoint> points;
            for (const plist::Value &frame : framesOf(track)) {
                const plist::Dictionary &key = frame.toDictionary();
                points.push_back(
                    {key.value("time"_L1).toDouble(), key.value("value"_L1).toDouble()});
            }
            m_tracks.emplace_back(std::move(points));
        }
    }

    void run(Context &context) override
    {
        for (size_t i = 0; i < m_tracks.size(); ++i) {
            context.set(int(i), m_tracks[i].isEmpty() ? 0.0 : m_tracks[i].valueAt(context.time()));
        }
    }

    static void addPorts(const NodeDescription &description, PortList &ports)
    {
        const int count =
            int(std::min<qsizetype>(tracksOf(description).size(), limits::countedPorts));
        for (int i = 1; i <= count; ++i) {
            ports.addOutput(u"output_%1"_s.arg(i), Type::Number);
        }
    }

private:
    static const plist::Array &tracksOf(const NodeDescription &description)
    {
        return description.setting("timeLines"_L1).toArray();
    }

    static const plist::Array &framesOf(const plist::Value &track)
    {
        return track.isArray() ? track.toArray() : track.toDictionary().value("kf"_L1).toArray();
    }

    std::vector<Curve> m_tracks;
};

constexpr std::array numberOutput{PortDefinition{"outputValue"_L1, Type::Number}};
constexpr std::array oscillatorInputs{PortDefinition{"inputType"_L1, Type::Index},
                                      PortDefinition{"inputPeriod"_L1, Type::Number, 1.0},
                                      PortDefinition{"inputPhase"_L1, Type::Number},
                                      PortDefinition{"inputAmplitude"_L1, Type::Number, 1.0},
                                      PortDefinition{"inputOffset"_L1, Type::Number},
                                      PortDefinition{"inputPWMRatio"_L1, Type::Number, 0.25}};
constexpr std::array randomInputs{PortDefinition{"inputMin"_L1, Type::Number},
                                  PortDefinition{"inputMax"_L1, Type::Number, 1.0}};
constexpr std::array noiseInputs{PortDefinition{"inputX"_L1, Type::Number},
                                 PortDefinition{"inputY"_L1, Type::Number},
                                 PortDefinition{"inputZ"_L1, Type::Number}};
constexpr std::array interpolationInputs{PortDefinition{"inputValue1"_L1, Type::Number},
                                         PortDefinition{"inputValue2"_L1, Type::Number, 1.0},
                                         PortDefinition{"inputDuration"_L1, Type::Number, 1.0},
                                         PortDefinition{"inputTension"_L1, Type::Number},
                                         PortDefinition{"inputRepeat"_L1, Type::Index},
                                         PortDefinition{"inputInterpolation"_L1, Type::Index}};

const std::array definitions{
    PatchDefinition{.className = "QCLFO"_L1,
                    .inputs = oscillatorInputs,
                    .outputs = numberOutput,
                    .traits = Trait::TimeDependent,
                    .run = oscillate},
    PatchDefinition{.className = "QCRandom"_L1,
                    .inputs = randomInputs,
                    .outputs = numberOutput,
                    .traits = Trait::TimeDependent,
                    .run = randomNumber},
    PatchDefinition{
        .className = "QCNoise"_L1, .inputs = noiseInputs, .outputs = numberOutput, .run = noise},
    PatchDefinition{.className = "QCInterpolation"_L1,
                    .inputs = interpolationInputs,
                    .outputs = numberOutput,
                    .traits = Trait::TimeDependent,
                    .make = makePatch<Interpolation>},
    PatchDefinition{.className = "QCTimeLine"_L1,
                    .traits = Trait::TimeDependent,
                    .make = makePatch<TimeLine>,
                    .addPorts = TimeLine::addPorts},
};

} // namespace

std::span<const PatchDefinition> generatorPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
