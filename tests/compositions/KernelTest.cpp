#include "CompositionBuilder.h"

#include "compositions/Limits.h"
#include "compositions/evaluator/Report.h"
#include "compositions/filters/FilterTable.h"

#include "tests/support/RowName.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;

struct Refusal
{
    const char *name;
    QString source;
    QString reason;
};

class RefusedKernel : public testing::TestWithParam<Refusal>
{};

TEST_P(RefusedKernel, SaysWhy)
{
    QString error;
    EXPECT_FALSE(Kernel::translate(GetParam().source, &error));
    EXPECT_EQ(error, GetParam().reason);
}

/// Thirty functions, each of which calls the one before twice: a thousand million calls.
QString doublingFunctions()
{
    QString source = u"float f0(float x) { return x; }"_s;
    for (int i = 1; i < 30; ++i) {
        source += u"float f%1(float x) { return f%2(x) + f%2(x); }"_s.arg(i).arg(i - 1);
    }
    return source + u"kernel vec4 k(float a) { return vec4(f29(a)); }"_s;
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedKernel,
    testing::Values(
        Refusal{"Empty", QString(), u"there is no kernel"_s},
        Refusal{"NoKernel", u"vec4 f() { return vec4(1.0); }"_s, u"there is no kernel"_s},
        Refusal{"Two", u"kernel vec4 a() { return vec4(1.0); } kernel vec4 b() { return a(); }"_s,
                u"there is more than one kernel"_s},
        Refusal{"Region", u"kernel float a() { return 1.0; }"_s, u"the kernel gives no colour"_s},
        Refusal{"Unclosed", u"kernel vec4 a() { return vec4(1.0);"_s, u"a brace is not closed"_s},
        Refusal{"Directive", u"#define x\nkernel vec4 a() { return vec4(1.0); }"_s,
                u"there is a character that does not belong there"_s},
        Refusal{"Uniform", u"uniform float x; kernel vec4 a() { return vec4(x); }"_s,
                u"there is something other than functions"_s},
        Refusal{"UnknownFunction", u"kernel vec4 a() { return texture2D(0, 1); }"_s,
                u"the function \"texture2D\" is not known"_s},
        Refusal{"Recursion", u"kernel vec4 a(float x) { return a(x); }"_s,
                u"the function \"a\" is not known"_s},
        Refusal{"MatrixArgument", u"kernel vec4 a(mat4 m) { return m[0]; }"_s,
                u"an argument is of a type that is not known"_s},
        Refusal{"LargeArray", u"kernel vec4 a() { float x[100000000]; return vec4(x[0]); }"_s,
                u"an array is too large"_s},
        Refusal{"ArrayOfConstant",
                u"const int n = 9; kernel vec4 a() { float x[n]; return vec4(x[0]); }"_s,
                u"an array is too large"_s},
        Refusal{"Doubling", doublingFunctions(), u"the kernel is too large"_s},
        Refusal{"Endless", QString(limits::kernelLength + 1, u' '), u"the kernel is too large"_s}),
    tests::RowName());

TEST(Kernel, KnowsItsArguments)
{
    const KernelRef kernel = Kernel::translate(uR"(/* é */ const float half = 0.5; // a comment
        vec2 twice(vec2 sample) { return sample * 2.0f; }
        kernel vec4 mixing(sampler image, __color tint, float amount, vec3 place, __table sampler map)
        { return sample(image, twice(samplerCoord(image))) * tint.rgba * half + place.xyzx; })"_s);
    ASSERT_TRUE(kernel);
    using Type = Kernel::ArgumentType;
    const std::vector<std::pair<QString, Type>> expected{{u"image"_s, Type::Sampler},
                                                         {u"tint"_s, Type::Color},
                                                         {u"amount"_s, Type::Number},
                                                         {u"place"_s, Type::Vector3},
                                                         {u"map"_s, Type::Sampler}};
    ASSERT_EQ(kernel->arguments().size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(kernel->arguments()[i].name, expected[i].first);
        EXPECT_EQ(kernel->arguments()[i].type, expected[i].second);
    }
    EXPECT_EQ(kernel->samplerCount(), 2);
    EXPECT_FALSE(kernel->functions().contains("\xe9"));
}

TEST(Filters, HaveKernelsForTheirParameters)
{
    for (const FilterDefinition &filter : allFilters()) {
        EXPECT_EQ(findFilter(QString(filter.name)), &filter);
        if (filter.extent == FilterExtent::Special) {
            continue;
        }
        const KernelRef kernel = filter.translatedKernel();
        ASSERT_TRUE(kernel) << filter.name.data();
        size_t parameters = 0;
        for (const FilterParameter &parameter : filter.parameters) {
            parameters += parameter.kind != ParameterKind::None ? 1 : 0;
        }
        EXPECT_EQ(kernel->arguments().size(), parameters) << filter.name.data();
    }
    for (const KernelRef &kernel : {copyKernel(), transformKernel(), tileKernel(), clampKernel(),
                                    shrinkKernel(), blurKernel()}) {
        EXPECT_TRUE(kernel);
    }
}

QStringList unsupported(const QString &className, const QString &identifier,
                        const plist::Dictionary &settings)
{
    MacroBuilder root;
    root.node(className, u"F"_s, {}, settings, identifier)
        .node(u"QCBillboard"_s, u"B"_s)
        .connect(u"F.outputImage"_s, u"B.inputImage"_s);
    QStringList names;
    for (const UnsupportedClass &entry : findUnsupportedClasses(Evaluator(root.read()).network())) {
        names.append(entry.className + u':' + entry.identifier);
    }
    return names;
}

TEST(Filters, AreReportedWhenTheyAreNotKnown)
{
    const QString source = u"kernel vec4 a(sampler s) { return sample(s, destCoord()); }"_s;
    EXPECT_EQ(unsupported(u"QCImageFilter"_s, u"CIGaussianBlur"_s, {}), QStringList());
    EXPECT_EQ(
        unsupported(u"QCImageFilter"_s, u"CIGaussianBlur"_s, {{u"normalizeCoordinates"_s, true}}),
        QStringList{u"QCImageFilter:CIGaussianBlur"_s});
    EXPECT_EQ(unsupported(u"QCImageFilter"_s, u"CISomebodysEffect"_s, {}),
              QStringList{u"QCImageFilter:CISomebodysEffect"_s});
    EXPECT_EQ(unsupported(u"QCImageKernel"_s, {}, {{u"sourceCode"_s, source}}), QStringList());
    EXPECT_EQ(
        unsupported(u"QCImageKernel"_s, {}, {{u"sourceCode"_s, source}, {u"advancedMode"_s, true}}),
        QStringList{u"QCImageKernel:"_s});
    EXPECT_EQ(unsupported(u"QCImageKernel"_s, {}, {{u"sourceCode"_s, u"nothing"_s}}),
              QStringList{u"QCImageKernel:"_s});
}

/// A pattern that is computed from itself in every frame grows only so deep, and what it costs to
/// draw it stays bounded.
TEST(Bounds, PatternsOfPatterns)
{
    MacroBuilder inside;
    inside.node(u"QCImageFilter"_s, u"G"_s, {}, {}, u"CIRadialGradient"_s)
        .node(u"QCRecursor"_s, u"R"_s)
        .node(u"QCImageFilter"_s, u"A"_s, {}, {}, u"CIAdditionCompositing"_s)
        .node(u"QCBillboard"_s, u"B"_s)
        .connect(u"G.outputImage"_s, u"R.Initial_i"_s)
        .connect(u"R.i"_s, u"A.inputImage"_s)
        .connect(u"R.i"_s, u"A.inputBackgroundImage"_s)
        .connect(u"A.outputImage"_s, u"B.inputImage"_s)
        .output(u"i"_s, u"A.outputImage"_s);
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"P"_s, inside);
    Evaluator evaluator(root.read());
    size_t most = 0;
    for (int i = 0; i < 40; ++i) {
        const Frame frame = evaluator.evaluate({.time = i / 60.0});
        most = std::max(most, frame.targets.size());
    }
    EXPECT_GT(most, 1U);
    EXPECT_LT(most, 10'000U);
}

TEST(Bounds, ComputedImages)
{
    MacroBuilder root;
    for (const double scale : {1e9, 1e300, -1e9, 1e-300, 0.0}) {
        const QString key = QString::number(scale);
        root.node(u"QCImageFilter"_s, u"C"_s + key, {}, {}, u"CICheckerboardGenerator"_s)
            .node(u"QCImageFilter"_s, u"K"_s + key,
                  {{u"inputRectangle_Z"_s, 100.0}, {u"inputRectangle_W"_s, scale}}, {}, u"CICrop"_s)
            .node(u"QCImageFilter"_s, u"T"_s + key,
                  {{u"inputTransform_ScaleX"_s, scale}, {u"inputTransform_TranslateY"_s, scale}},
                  {}, u"CIAffineTransform"_s)
            .node(u"QCImageFilter"_s, u"L"_s + key, {{u"inputRadius"_s, scale}}, {},
                  u"CIGaussianBlur"_s)
            .node(u"QCBillboard"_s, u"B"_s + key)
            .connect(u"C%1.outputImage"_s.arg(key), u"K%1.inputImage"_s.arg(key))
            .connect(u"K%1.outputImage"_s.arg(key), u"T%1.inputImage"_s.arg(key))
            .connect(u"T%1.outputImage"_s.arg(key), u"L%1.inputImage"_s.arg(key))
            .connect(u"L%1.outputImage"_s.arg(key), u"B%1.inputImage"_s.arg(key));
    }
    Evaluator evaluator(root.read());
    for (const RenderTarget &target : evaluator.evaluate({}).targets) {
        EXPECT_LE(target.pixels.width(), limits::imageSide);
        EXPECT_LE(target.pixels.height(), limits::imageSide);
    }
}

} // namespace
} // namespace tarnwell::compositions::test
