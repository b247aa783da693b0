#include "compositions/filters/FilterTable.h"

#include <QHash>

#include <algorithm>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

using Kind = ParameterKind;

constexpr FilterParameter image{"inputImage"_L1, Kind::Image};
constexpr FilterParameter background{"inputBackgroundImage"_L1, Kind::Image};
constexpr FilterParameter transform{"inputTransform"_L1, Kind::Transform};
constexpr FilterParameter center{"inputCenter"_L1, Kind::Vector2, {150.0, 150.0}};
constexpr FilterParameter white0{"inputColor0"_L1, Kind::Color, {1.0, 1.0, 1.0, 1.0}};
constexpr FilterParameter black1{"inputColor1"_L1, Kind::Color, {0.0, 0.0, 0.0, 1.0}};

constexpr FilterParameter number(QLatin1StringView key, double value)
{
    return {key, Kind::Number, {value}};
}

// What filters of one colour at a time are wrapped in.
#define POINTWISE(parameters, statements)                                                          \
    "kernel vec4 pointwise(sampler image" parameters                                               \
    ") { vec4 c = unpremultiply(sample(image, samplerCoord(image))); " statements                  \
    " return premultiply(clamp(c, 0.0, 1.0)); }"
#define GREY "dot(c.rgb, vec3(0.2125, 0.7154, 0.0721))"

// Images over each other: s is what comes on top, d what is there, both premultiplied.
#define COMPOSITING(result)                                                                        \
    "kernel vec4 compositing(sampler top, sampler bottom) { "                                      \
    "vec4 s = sample(top, samplerCoord(top)); vec4 d = sample(bottom, samplerCoord(bottom)); "     \
    "return " result "; }"

// The same with a formula for where both are: a on top of b, neither premultiplied.
#define BLENDING(formula)                                                                          \
    "vec3 both(vec3 a, vec3 b) { return " formula "; } "                                           \
    "kernel vec4 blending(sampler top, sampler bottom) { "                                         \
    "vec4 s = sample(top, samplerCoord(top)); vec4 d = sample(bottom, samplerCoord(bottom)); "     \
    "vec3 mixed = both(unpremultiply(s).rgb, unpremultiply(d).rgb); "                              \
    "return vec4(s.rgb * (1.0 - d.a) + d.rgb * (1.0 - s.a) + mixed * s.a * d.a, "                  \
    "s.a + d.a - s.a * d.a); }"
#define HARD_LIGHT(x, y)                                                                           \
    "mix(2.0 * " x " * " y ", 1.0 - 2.0 * (1.0 - " x ") * (1.0 - " y "), step(0.5, " x "))"

// Two colours at two places, and a line between them on which a pixel lies.
#define BETWEEN "return mix(premultiply(c0), premultiply(c1), clamp(t, 0.0, 1.0)); }"

constexpr std::array table{
    FilterDefinition{"CIGaussianBlur"_L1,
                     {image, number("inputRadius"_L1, 10.0)},
                     FilterExtent::Special,
                     nullptr},
    FilterDefinition{"CICrop"_L1,
                     {image, {"inputRectangle"_L1, Kind::Vector4, {0.0, 0.0, 300.0, 300.0}}},
                     FilterExtent::Special,
                     nullptr},
    FilterDefinition{"CIAffineTransform"_L1, {image, transform}, FilterExtent::Special, nullptr},
    FilterDefinition{"CIAffineClamp"_L1, {image, transform}, FilterExtent::Special, nullptr},
    FilterDefinition{"CIAffineTile"_L1, {image, transform}, FilterExtent::Special, nullptr},
    FilterDefinition{"CILanczosScaleTransform"_L1,
                     {image, number("inputScale"_L1, 1.0), number("inputAspectRatio"_L1, 1.0)},
                     FilterExtent::Special,
                     nullptr},
    FilterDefinition{"CIConstantColorGenerator"_L1,
                     {FilterParameter{"inputColor"_L1, Kind::Color, {1.0, 1.0, 1.0, 1.0}}},
                     FilterExtent::Special,
                     nullptr},

    FilterDefinition{"CIColorInvert"_L1,
                     {image},
                     FilterExtent::FirstImage,
                     POINTWISE("", "c.rgb = 1.0 - c.rgb;")},
    FilterDefinition{"CIColorControls"_L1,
                     {image, number("inputSaturation"_L1, 1.0), number("inputBrightness"_L1, 0.0),
                      number("inputContrast"_L1, 1.0)},
                     FilterExtent::FirstImage,
                     POINTWISE(", float saturation, float brightness, float contrast",
                               "c.rgb = mix(vec3(" GREY "), c.rgb, saturation);"
                               "c.rgb = (c.rgb - 0.5) * contrast + 0.5 + brightness;")},
    FilterDefinition{"CIGammaAdjust"_L1,
                     {image, number("inputPower"_L1, 0.75)},
                     FilterExtent::FirstImage,
                     POINTWISE(", float power", "c.rgb = pow(max(c.rgb, 0.0), vec3(power));")},
    FilterDefinition{"CIExposureAdjust"_L1,
                     {image, number("inputEV"_L1, 0.5)},
                     FilterExtent::FirstImage,
                     POINTWISE(", float stops", "c.rgb *= exp2(stops);")},
    FilterDefinition{"CIColorMatrix"_L1,
                     {image,
                      {"inputRVector"_L1, Kind::Vector4, {1.0, 0.0, 0.0, 0.0}},
                      {"inputGVector"_L1, Kind::Vector4, {0.0, 1.0, 0.0, 0.0}},
                      {"inputBVector"_L1, Kind::Vector4, {0.0, 0.0, 1.0, 0.0}},
                      {"inputAVector"_L1, Kind::Vector4, {0.0, 0.0, 0.0, 1.0}},
                      {"inputBiasVector"_L1, Kind::Vector4, {}}},
                     FilterExtent::FirstImage,
                     POINTWISE(", vec4 r, vec4 g, vec4 b, vec4 a, vec4 bias",
                               "c = vec4(dot(c, r), dot(c, g), dot(c, b), dot(c, a)) + bias;")},
    FilterDefinition{"CIColorMonochrome"_L1,
                     {image,
                      {"inputColor"_L1, Kind::Color, {0.6, 0.45, 0.3, 1.0}},
                      number("inputIntensity"_L1, 1.0)},
                     FilterExtent::FirstImage,
                     POINTWISE(", __color color, float intensity",
                               "c.rgb = mix(c.rgb, color.rgb * " GREY ", intensity);")},
    FilterDefinition{"CIFalseColor"_L1,
                     {image, white0, black1},
                     FilterExtent::FirstImage,
                     POINTWISE(", __color c0, __color c1",
                               "vec4 f = mix(c0, c1, " GREY "); c = vec4(f.rgb, f.a * c.a);")},
    FilterDefinition{"CIMaskToAlpha"_L1,
                     {image},
                     FilterExtent::FirstImage,
                     POINTWISE("", "c = vec4(vec3(1.0), " GREY " * c.a);")},
    FilterDefinition{"CIMaximumComponent"_L1,
                     {image},
                     FilterExtent::FirstImage,
                     POINTWISE("", "c.rgb = vec3(max(c.r, max(c.g, c.b)));")},
    FilterDefinition{"CIMinimumComponent"_L1,
                     {image},
                     FilterExtent::FirstImage,
                     POINTWISE("", "c.rgb = vec3(min(c.r, min(c.g, c.b)));")},

    FilterDefinition{"CISourceOverCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("s + d * (1.0 - s.a)")},
    FilterDefinition{"CISourceInCompositing"_L1,
                     {image, background},
                     FilterExtent::FirstImage,
                     COMPOSITING("s * d.a")},
    FilterDefinition{"CISourceOutCompositing"_L1,
                     {image, background},
                     FilterExtent::FirstImage,
                     COMPOSITING("s * (1.0 - d.a)")},
    FilterDefinition{"CISourceAtopCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("s * d.a + d * (1.0 - s.a)")},
    FilterDefinition{"CIAdditionCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("min(s + d, 1.0)")},
    FilterDefinition{"CIMultiplyCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("s * d")},
    FilterDefinition{"CIMaximumCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("max(s, d)")},
    FilterDefinition{"CIMinimumCompositing"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     COMPOSITING("min(s, d)")},
    FilterDefinition{
        "CIMultiplyBlendMode"_L1, {image, background}, FilterExtent::AllImages, BLENDING("a * b")},
    FilterDefinition{"CIScreenBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING("a + b - a * b")},
    FilterDefinition{"CIDarkenBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING("min(a, b)")},
    FilterDefinition{"CILightenBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING("max(a, b)")},
    FilterDefinition{"CIDifferenceBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING("abs(a - b)")},
    FilterDefinition{"CIExclusionBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING("a + b - 2.0 * a * b")},
    FilterDefinition{"CIHardLightBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING(HARD_LIGHT("a", "b"))},
    FilterDefinition{"CIOverlayBlendMode"_L1,
                     {image, background},
                     FilterExtent::AllImages,
                     BLENDING(HARD_LIGHT("b", "a"))},
    FilterDefinition{"CIBlendWithMask"_L1,
                     {image, background, FilterParameter{"inputMaskImage"_L1, Kind::Image}},
                     FilterExtent::AllImages,
                     "kernel vec4 masked(sampler top, sampler bottom, sampler mask) {"
                     "vec4 c = sample(mask, samplerCoord(mask));"
                     "return mix(sample(bottom, samplerCoord(bottom)),"
                     "sample(top, samplerCoord(top)), " GREY "); }"},
    FilterDefinition{
        "CIDissolveTransition"_L1,
        {image, FilterParameter{"inputTargetImage"_L1, Kind::Image}, number("inputTime"_L1, 0.0)},
        FilterExtent::AllImages,
        "kernel vec4 dissolve(sampler from, sampler to, float time) {"
        "return mix(sample(from, samplerCoord(from)), sample(to, samplerCoord(to)),"
        "clamp(time, 0.0, 1.0)); }"},

    FilterDefinition{
        "CIRadialGradient"_L1,
        {center, number("inputRadius0"_L1, 5.0), number("inputRadius1"_L1, 100.0), white0, black1},
        FilterExtent::Endless,
        "kernel vec4 radial(vec2 center, float r0, float r1, __color c0, __color c1) {"
        "float d = distance(destCoord(), center);"
        "float t = r1 == r0 ? step(r0, d) : (d - r0) / (r1 - r0); " BETWEEN},
    FilterDefinition{
        "CILinearGradient"_L1,
        {FilterParameter{"inputPoint0"_L1, Kind::Vector2},
         FilterParameter{"inputPoint1"_L1, Kind::Vector2, {200.0, 200.0}}, white0, black1},
        FilterExtent::Endless,
        "kernel vec4 linear(vec2 p0, vec2 p1, __color c0, __color c1) {"
        "vec2 way = p1 - p0;"
        "float t = dot(destCoord() - p0, way) / max(dot(way, way), 0.000001); " BETWEEN},
    FilterDefinition{
        "CICheckerboardGenerator"_L1,
        {center, white0, black1, number("inputWidth"_L1, 80.0), number("inputSharpness"_L1, 1.0)},
        FilterExtent::Endless,
        "kernel vec4 board(vec2 center, __color c0, __color c1, float width, float sharpness) {"
        "vec2 field = floor((destCoord() - center) / max(width, 1.0));"
        "float t = mod(field.x + field.y, 2.0); " BETWEEN},
    FilterDefinition{
        "CIStripesGenerator"_L1,
        {center, white0, black1, number("inputWidth"_L1, 80.0), number("inputSharpness"_L1, 1.0)},
        FilterExtent::Endless,
        "kernel vec4 stripes(vec2 center, __color c0, __color c1, float width, float sharpness) {"
        "float t = mod(floor((destCoord().x - center.x) / max(width, 1.0)), 2.0); " BETWEEN},
};

KernelRef translated(const char *source)
{
    return Kernel::translate(QString::fromLatin1(source));
}

} // namespace

KernelRef FilterDefinition::translatedKernel() const
{
    static const auto kernels = [] {
        QHash<const FilterDefinition *, KernelRef> result;
        for (const FilterDefinition &definition : table) {
            if (definition.kernel != nullptr) {
                result.insert(&definition, translated(definition.kernel));
            }
        }
        return result;
    }();
    return kernels.value(this);
}

const FilterDefinition *findFilter(QStringView name)
{
    const auto *const found = std::ranges::find_if(
        table, [name](const FilterDefinition &definition) { return definition.name == name; });
    return found == table.end() ? nullptr : found;
}

std::span<const FilterDefinition> allFilters()
{
    return table;
}

KernelRef copyKernel()
{
    static const KernelRef kernel = translated(
        "kernel vec4 copy(sampler image) { return sample(image, samplerCoord(image)); }");
    return kernel;
}

KernelRef transformKernel()
{
    static const KernelRef kernel =
        translated("kernel vec4 moved(sampler image, vec3 x, vec3 y) {"
                   "vec3 p = vec3(destCoord(), 1.0);"
                   "return sample(image, vec2(dot(p, x), dot(p, y))); }");
    return kernel;
}

KernelRef tileKernel()
{
    static const KernelRef kernel =
        translated("kernel vec4 tiled(sampler image, vec3 x, vec3 y) {"
                   "vec3 p = vec3(destCoord(), 1.0); vec4 e = samplerExtent(image);"
                   "vec2 q = vec2(dot(p, x), dot(p, y)) - e.xy;"
                   "return sample(image, mod(q, e.zw) + e.xy); }");
    return kernel;
}

KernelRef clampKernel()
{
    static const KernelRef kernel =
        translated("kernel vec4 clamped(sampler image, vec3 x, vec3 y) {"
                   "vec3 p = vec3(destCoord(), 1.0); vec4 e = samplerExtent(image);"
                   "vec2 q = vec2(dot(p, x), dot(p, y));"
                   "return sample(image, clamp(q, e.xy + 0.5, e.xy + e.zw - 0.5)); }");
    return kernel;
}

KernelRef shrinkKernel()
{
    // Each look between four pixels gives their mean.
    static const KernelRef kernel =
        translated("kernel vec4 smaller(sampler image, float factor) {"
                   "vec2 corner = (destCoord() - 0.5) * factor + 1.0; vec4 sum = vec4(0.0);"
                   "float looks = max(floor(factor / 2.0), 1.0);"
                   "for (float y = 0.0; y < looks; y++) for (float x = 0.0; x < looks; x++)"
                   "sum += sample(image, corner + 2.0 * vec2(x, y));"
                   "return sum / (looks * looks); }");
    return kernel;
}

KernelRef blurKernel()
{
    static const KernelRef kernel =
        translated("kernel vec4 blurred(sampler image, vec2 along, float deviation) {"
                   "vec4 sum = vec4(0.0); float weights = 0.0; float reach = ceil(3.0 * deviation);"
                   "for (float i = -reach; i <= reach; i++) {"
                   "float weight = exp(-i * i / (2.0 * deviation * deviation));"
                   "sum += weight * sample(image, destCoord() + i * along); weights += weight; }"
                   "return sum / weights; }");
    return kernel;
}

} // namespace tarnwell::compositions
