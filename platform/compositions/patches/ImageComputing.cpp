#include "compositions/patches/ImageComputing.h"

#include "compositions/evaluator/Context.h"
#include "compositions/filters/FilterTable.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions::computing {

namespace {

using Argument = std::array<float, 4>;

/// The rows by which a kernel finds the place of its image that a place of the result shows.
ImageRecipe transformed(const KernelRef &kernel, const ImageRef &image, const QTransform &inverse)
{
    return {
        .kernel = kernel,
        .images = {image},
        .arguments = {Argument{},
                      Argument{float(inverse.m11()), float(inverse.m21()), float(inverse.m31())},
                      Argument{float(inverse.m12()), float(inverse.m22()), float(inverse.m32())}},
        .toImages = inverse};
}

bool isFinite(const QTransform &transform)
{
    return std::isfinite(transform.m11()) && std::isfinite(transform.m12()) &&
           std::isfinite(transform.m21()) && std::isfinite(transform.m22()) &&
           std::isfinite(transform.m31()) && std::isfinite(transform.m32());
}

QTransform inverted(const QTransform &transform, bool *isPossible)
{
    const QTransform inverse = isFinite(transform) ? transform.inverted(isPossible) : QTransform();
    *isPossible = isFinite(transform) && *isPossible && isFinite(inverse);
    return inverse;
}

QRectF scaled(const QRectF &rectangle, double factor)
{
    return {rectangle.topLeft() * factor, rectangle.size() * factor};
}

} // namespace

ImageRef apply(Context &context, const ImageRecipe &recipe, const QRect &extent)
{
    return context.computeImage(recipe, extent);
}

ImageRef endless(ImageRecipe recipe)
{
    return Image::endless(std::move(recipe));
}

std::optional<QRect> extentOfAll(const std::vector<ImageRef> &images)
{
    QRect extent;
    for (const ImageRef &image : images) {
        if (image && image->isEndless()) {
            return std::nullopt;
        }
        extent = image ? extent.united(image->extent()) : extent;
    }
    return extent;
}

ImageRef crop(Context &context, const ImageRef &image, const QRectF &rectangle)
{
    const QRect wanted = coveringPixels(rectangle.normalized());
    if (!image || (!image->isEndless() && wanted.contains(image->extent()))) {
        return image;
    }
    return apply(context, {.kernel = copyKernel(), .images = {image}, .arguments = {Argument{}}},
                 image->isEndless() ? wanted : wanted.intersected(image->extent()));
}

ImageRef transform(Context &context, const ImageRef &image, const QTransform &transform)
{
    bool isPossible = true;
    const QTransform inverse = inverted(transform, &isPossible);
    if (!image || transform.isIdentity() || image->kind() == Image::Kind::Constant) {
        return image;
    }
    if (!isPossible) {
        return {};
    }
    ImageRecipe recipe = transformed(transformKernel(), image, inverse);
    return image->isEndless()
               ? endless(std::move(recipe))
               : apply(context, recipe, coveringPixels(transform.mapRect(QRectF(image->extent()))));
}

ImageRef tile(const ImageRef &image, const QTransform &transform)
{
    bool isPossible = true;
    const QTransform inverse = inverted(transform, &isPossible);
    if (!image || image->isEndless() || !isPossible) {
        return image;
    }
    return endless(transformed(tileKernel(), image, inverse));
}

ImageRef clampEdges(const ImageRef &image, const QTransform &transform)
{
    bool isPossible = true;
    const QTransform inverse = inverted(transform, &isPossible);
    if (!image || image->isEndless() || !isPossible) {
        return image;
    }
    return endless(transformed(clampKernel(), image, inverse));
}

/// Wide blurs look alike on a smaller picture: it is made so small that few pixels are in reach.
ImageRef blur(Context &context, const ImageRef &image, double deviation)
{
    constexpr double largest = 512.0;
    constexpr double leastReach = 3.0;
    if (!image || image->kind() == Image::Kind::Constant || !(deviation > 0.1)) {
        return image;
    }
    deviation = std::min(deviation, largest);
    const double margin = std::ceil(3.0 * deviation);
    ImageRef source = image;
    QRect extent =
        coveringPixels(QRectF(image->extent()).adjusted(-margin, -margin, margin, margin));
    if (image->isEndless()) {
        extent = QRect(QPoint(0, 0), context.destination());
        source = context.computeImage(
            image->recipe(),
            coveringPixels(QRectF(extent).adjusted(-margin, -margin, margin, margin)),
            Image::Outside::NearestPixel);
    }
    double factor = 1.0;
    while (deviation / factor > leastReach) {
        factor *= 2.0;
    }
    if (factor > 1.0) {
        source = apply(
            context,
            {.kernel = shrinkKernel(),
             .images = {source},
             .arguments = {Argument{}, Argument{float(factor)}}},
            coveringPixels(scaled(QRectF(source ? source->extent() : QRect()), 1.0 / factor)));
    }
    const QRect small = coveringPixels(scaled(QRectF(extent), 1.0 / factor));
    for (const Argument &along : {Argument{1.0F, 0.0F}, Argument{0.0F, 1.0F}}) {
        if (!source) {
            return {};
        }
        source = apply(context,
                       {.kernel = blurKernel(),
                        .images = {source},
                        .arguments = {Argument{}, along, Argument{float(deviation / factor)}}},
                       small);
    }
    if (factor == 1.0 || !source) {
        return source;
    }
    const QTransform grown = QTransform::fromScale(1.0 / factor, 1.0 / factor);
    return apply(context, transformed(transformKernel(), source, grown), extent);
}

} // namespace tarnwell::compositions::computing
