#include "compositions/evaluator/Context.h"
#include "compositions/filters/FilterTable.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/ImageComputing.h"
#include "compositions/patches/Settings.h"

#include <algorithm>
#include <array>
#include <deque>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

using Argument = std::array<float, 4>;

constexpr std::array transformParts{"OriginX"_L1, "OriginY"_L1,    "ScaleX"_L1,    "ScaleY"_L1,
                                    "Rotate"_L1,  "TranslateX"_L1, "TranslateY"_L1};

void addParameterPorts(const FilterParameter &parameter, PortList &ports)
{
    const auto addNumbers = [&](QStringView suffixes) {
        for (qsizetype i = 0; i < suffixes.size(); ++i) {
            ports.addInput(parameter.key + u'_' + suffixes[i], Type::Number,
                           parameter.defaults[size_t(i)]);
        }
    };
    switch (parameter.kind) {
    case ParameterKind::Image:
        ports.addInput(parameter.key, Type::Image);
        break;
    case ParameterKind::Number:
        ports.addInput(parameter.key, Type::Number, parameter.defaults[0]);
        break;
    case ParameterKind::Color: {
        const auto &[red, green, blue, alpha] = parameter.defaults;
        ports.addInput(parameter.key, Type::Color, Color{red, green, blue, alpha});
        break;
    }
    case ParameterKind::Vector2:
        addNumbers(u"XY");
        break;
    case ParameterKind::Vector4:
        addNumbers(u"XYZW");
        break;
    case ParameterKind::Transform:
        for (const QLatin1StringView part : transformParts) {
            ports.addInput(parameter.key + u'_' + part, Type::Number,
                           part.startsWith("Scale"_L1) ? 1.0 : 0.0);
        }
        break;
    case ParameterKind::None:
        break;
    }
}

Argument components(const Color &color)
{
    return {float(color.red), float(color.green), float(color.blue), float(color.alpha)};
}

/// Reads parameters one after the other, as their ports follow each other.
class Arguments
{
public:
    explicit Arguments(Context &context)
        : m_context(context)
    {}

    ImageRef image() { return m_context.image(m_next++); }
    double number() { return m_context.number(m_next++); }
    Color color() { return m_context.color(m_next++); }
    Argument vector(int count)
    {
        Argument vector{};
        for (int i = 0; i < count; ++i) {
            vector[size_t(i)] = float(number());
        }
        return vector;
    }
    /// Scales and turns about an origin, then moves.
    QTransform transform()
    {
        // Braces, because only they promise to read from left to right.
        const QPointF origin{number(), number()};
        const QPointF scale{number(), number()};
        const double degrees = number();
        const QPointF way{number(), number()};
        QTransform result;
        result.translate(way.x() + origin.x(), way.y() + origin.y());
        result.rotate(degrees);
        result.scale(scale.x(), scale.y());
        result.translate(-origin.x(), -origin.y());
        return result;
    }

private:
    Context &m_context;
    int m_next = 0;
};

const FilterDefinition *filterOf(const NodeDescription &description)
{
    return findFilter(description.identifier);
}

/// Coordinates that count in parts of the image instead of pixels are not known well enough.
bool supportsFilter(const NodeDescription &description)
{
    return filterOf(description) != nullptr && !flagSetting(description, "normalizeCoordinates"_L1);
}

void addFilterPorts(const NodeDescription &description, PortList &ports)
{
    if (const FilterDefinition *filter = filterOf(description)) {
        for (const FilterParameter &parameter : filter->parameters) {
            addParameterPorts(parameter, ports);
        }
    }
}

ImageRef runSpecial(const FilterDefinition &filter, Context &context)
{
    Arguments arguments(context);
    if (filter.name == "CIConstantColorGenerator"_L1) {
        return Image::constant(arguments.color());
    }
    const ImageRef image = arguments.image();
    if (filter.name == "CIGaussianBlur"_L1) {
        return computing::blur(context, image, arguments.number());
    }
    if (filter.name == "CICrop"_L1) {
        const Argument r = arguments.vector(4);
        return computing::crop(context, image, QRectF(r[0], r[1], r[2], r[3]));
    }
    if (filter.name == "CILanczosScaleTransform"_L1) {
        const double scale = arguments.number();
        return computing::transform(context, image,
                                    QTransform::fromScale(scale * arguments.number(), scale));
    }
    const QTransform transform = arguments.transform();
    return filter.name == "CIAffineClamp"_L1  ? computing::clampEdges(image, transform)
           : filter.name == "CIAffineTile"_L1 ? computing::tile(image, transform)
                                              : computing::transform(context, image, transform);
}

ImageRecipe recipeOf(const FilterDefinition &filter, Context &context)
{
    Arguments arguments(context);
    ImageRecipe recipe{.kernel = filter.translatedKernel(), .images = {}, .arguments = {}};
    for (const FilterParameter &parameter : filter.parameters) {
        switch (parameter.kind) {
        case ParameterKind::Image:
            recipe.images.push_back(arguments.image());
            recipe.arguments.push_back({});
            break;
        case ParameterKind::Number:
            recipe.arguments.push_back(arguments.vector(1));
            break;
        case ParameterKind::Color:
            recipe.arguments.push_back(components(arguments.color()));
            break;
        case ParameterKind::Vector2:
            recipe.arguments.push_back(arguments.vector(2));
            break;
        case ParameterKind::Vector4:
            recipe.arguments.push_back(arguments.vector(4));
            break;
        default:
            break;
        }
    }
    return recipe;
}

void filterImage(Context &context)
{
    const FilterDefinition &filter = *filterOf(context.description());
    if (filter.extent == FilterExtent::Special) {
        context.set(0, runSpecial(filter, context));
        return;
    }
    ImageRecipe recipe = recipeOf(filter, context);
    if (filter.extent == FilterExtent::Endless) {
        context.set(0, computing::endless(std::move(recipe)));
        return;
    }
    std::vector<ImageRef> covering = recipe.images;
    if (!covering.front()) {
        context.set(0, {});
        return;
    }
    if (filter.extent == FilterExtent::FirstImage) {
        covering.resize(1);
    }
    const auto extent = computing::extentOfAll(covering);
    context.set(0, extent ? computing::apply(context, recipe, *extent)
                          : computing::endless(std::move(recipe)));
}

/// A kernel that its author wrote.
class ImageKernel : public Patch
{
public:
    explicit ImageKernel(const NodeDescription &description)
        : m_kernel(kernelOf(description))
    {}

    void run(Context &context) override
    {
        if (!m_kernel) {
            return;
        }
        ImageRecipe recipe{.kernel = m_kernel, .images = {}, .arguments = {}};
        Arguments arguments(context);
        for (const Kernel::Argument &argument : m_kernel->arguments()) {
            recipe.arguments.push_back({});
            switch (argument.type) {
            case Kernel::ArgumentType::Sampler:
                recipe.images.push_back(arguments.image());
                break;
            case Kernel::ArgumentType::Color:
                recipe.arguments.back() = components(arguments.color());
                break;
            default:
                recipe.arguments.back() = arguments.vector(numbersOf(argument.type));
                break;
            }
        }
        const auto extent = computing::extentOfAll(recipe.images);
        // Without an image there is nothing that would bound the result.
        context.set(0, extent && !recipe.images.empty() ? computing::apply(context, recipe, *extent)
                                                        : computing::endless(std::move(recipe)));
    }

    /// The same kernel is asked for several times for each node, and a composition may have very
    /// many nodes with one source: the last translations are kept.
    static KernelRef kernelOf(const NodeDescription &description)
    {
        constexpr size_t mostKept = 8;
        static thread_local std::deque<std::pair<QString, KernelRef>> kept;
        const QString source = description.setting("sourceCode"_L1).toString();
        const auto found = std::ranges::find(kept, source, &std::pair<QString, KernelRef>::first);
        if (found != kept.end()) {
            return found->second;
        }
        if (kept.size() >= mostKept) {
            kept.pop_back();
        }
        kept.emplace_front(source, Kernel::translate(source));
        return kept.front().second;
    }

    /// In the advanced mode a script decides which kernels run, over which pixels.
    static bool supports(const NodeDescription &description)
    {
        return !flagSetting(description, "advancedMode"_L1) && kernelOf(description);
    }

    static void addPorts(const NodeDescription &description, PortList &ports)
    {
        const KernelRef kernel = kernelOf(description);
        if (!kernel) {
            return;
        }
        for (const Kernel::Argument &argument : kernel->arguments()) {
            if (argument.type == Kernel::ArgumentType::Sampler) {
                ports.addInput(argument.name, Type::Image);
            } else if (argument.type == Kernel::ArgumentType::Color) {
                ports.addInput(argument.name, Type::Color, Color{1.0, 1.0, 1.0, 1.0});
            } else if (argument.type == Kernel::ArgumentType::Number) {
                ports.addInput(argument.name, Type::Number);
            } else {
                for (const QChar suffix : QStringView(u"XYZW").left(numbersOf(argument.type))) {
                    ports.addInput(argument.name + u'_' + suffix, Type::Number);
                }
            }
        }
    }

private:
    static int numbersOf(Kernel::ArgumentType type)
    {
        return 1 + int(type) - int(Kernel::ArgumentType::Number);
    }

    KernelRef m_kernel;
};

/// Brings an image to a size in pixels, with the lower left corner in the origin.
void resizeImage(Context &context)
{
    const ImageRef image = context.image(0);
    const QSizeF wanted(context.number(1), context.number(2));
    if (!image || image->isEndless() || !(wanted.width() >= 1.0) || !(wanted.height() >= 1.0)) {
        context.set(0, image);
        return;
    }
    constexpr qint64 ifSmaller = 1;
    constexpr qint64 ifBigger = 2;
    const QSizeF size = image->pixelSize();
    const bool isSmaller = size.width() < wanted.width() || size.height() < wanted.height();
    const bool isBigger = size.width() > wanted.width() || size.height() > wanted.height();
    const qint64 condition = context.index(4);
    if ((condition == ifSmaller && !isSmaller) || (condition == ifBigger && !isBigger)) {
        context.set(0, image);
        return;
    }
    constexpr qint64 stretch = 0;
    constexpr qint64 fit = 1;
    const qint64 mode = context.index(3);
    QSizeF scale(wanted.width() / size.width(), wanted.height() / size.height());
    if (mode != stretch) {
        const double both = mode == fit ? std::min(scale.width(), scale.height())
                                        : std::max(scale.width(), scale.height());
        scale = {both, both};
    }
    // Where the image is larger than what it fills, its edges are cut off evenly.
    const QSizeF covered(std::min(wanted.width(), size.width() * scale.width()),
                         std::min(wanted.height(), size.height() * scale.height()));
    const QPointF corner = image->extent().topLeft();
    QTransform transform;
    transform.translate((covered.width() - size.width() * scale.width()) / 2.0,
                        (covered.height() - size.height() * scale.height()) / 2.0);
    transform.scale(scale.width(), scale.height());
    transform.translate(-corner.x(), -corner.y());
    context.set(0, computing::crop(context, computing::transform(context, image, transform),
                                   QRectF(QPointF(0.0, 0.0), covered)));
}

constexpr std::array imageOutput{PortDefinition{"outputImage"_L1, Type::Image}};
constexpr std::array resizeInputs{
    PortDefinition{"inputImage"_L1, Type::Image}, PortDefinition{"inputWidth"_L1, Type::Number},
    PortDefinition{"inputHeight"_L1, Type::Number}, PortDefinition{"inputMode"_L1, Type::Index},
    PortDefinition{"inputCondition"_L1, Type::Index}};

// What is computed here is drawn anew in every frame, like everything else: whoever draws may have
// missed a frame, or may have lost all pictures together with the window.
const std::array definitions{
    PatchDefinition{.className = "QCImageFilter"_L1,
                    .outputs = imageOutput,
                    .traits = Trait::FrameDependent,
                    .run = filterImage,
                    .addPorts = addFilterPorts,
                    .supports = supportsFilter},
    PatchDefinition{.className = "QCImageKernel"_L1,
                    .outputs = imageOutput,
                    .traits = Trait::FrameDependent,
                    .make = makePatch<ImageKernel>,
                    .addPorts = ImageKernel::addPorts,
                    .supports = ImageKernel::supports},
    PatchDefinition{.className = "QCImageResize"_L1,
                    .inputs = resizeInputs,
                    .outputs = imageOutput,
                    .traits = Trait::FrameDependent,
                    .run = resizeImage},
};

} // namespace

std::span<const PatchDefinition> imageFilterPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
