#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Context.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

void addLoaderPorts(const NodeDescription &description, PortList &ports)
{
    if (flagSetting(description, "allImages"_L1)) {
        ports.addOutput(u"outputImages"_s, Type::Structure);
    }
}

/// Decodes what the file carries when it is first asked for; it never opens another file.
class ImageLoader : public Patch
{
public:
    void run(Context &context) override
    {
        const NodeDescription &description = context.description();
        const bool all = flagSetting(description, "allImages"_L1);
        const std::vector<ImageRef> images =
            decodeImages(description.setting("imageData"_L1).toData(), all, context.imageBudget());
        context.set(0, images.empty() ? Value() : Value(images.front()));
        if (all) {
            context.set(1, Structure::list({images.begin(), images.end()}));
        }
    }
};

void imageDimensions(Context &context)
{
    const ImageRef image = context.image(0);
    const QSize size = !image               ? QSize(0, 0)
                       : image->isEndless() ? context.destination()
                                            : image->pixelSize();
    const double unit = unitsPerPixel(context.destination());
    context.set(0, Value::index(size.width()));
    context.set(1, Value::index(size.height()));
    context.set(2, size.width() * unit);
    context.set(3, size.height() * unit);
    context.set(4, size.height() > 0 ? double(size.width()) / size.height() : 0.0);
}

constexpr std::array imageInput{PortDefinition{"inputImage"_L1, Type::Image}};
constexpr std::array imageOutput{PortDefinition{"outputImage"_L1, Type::Image}};
constexpr std::array dimensionOutputs{PortDefinition{"outputPixelsWide"_L1, Type::Index},
                                      PortDefinition{"outputPixelsHigh"_L1, Type::Index},
                                      PortDefinition{"outputWidth"_L1, Type::Number},
                                      PortDefinition{"outputHeight"_L1, Type::Number},
                                      PortDefinition{"outputRatio"_L1, Type::Number}};

void passImage(Context &context)
{
    context.set(0, context.image(0));
}

const std::array definitions{
    PatchDefinition{.className = "QCImageLoader"_L1,
                    .outputs = imageOutput,
                    .make = makePatch<ImageLoader>,
                    .addPorts = addLoaderPorts},
    PatchDefinition{.className = "QCImageDimensions"_L1,
                    .inputs = imageInput,
                    .outputs = dimensionOutputs,
                    .traits = Trait::FrameDependent,
                    .run = imageDimensions},
    PatchDefinition{.className = "QCImageMatrix"_L1,
                    .inputs = imageInput,
                    .outputs = imageOutput,
                    .run = passImage},
    // How a texture is set up shows in nothing that is drawn here.
    PatchDefinition{.className = "QCImageTexturingProperties"_L1,
                    .inputs = imageInput,
                    .outputs = imageOutput,
                    .run = passImage},
};

} // namespace

std::span<const PatchDefinition> imagePatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
