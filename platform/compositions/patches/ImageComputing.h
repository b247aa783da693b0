#pragma once

#include "compositions/model/Image.h"

#include <optional>

namespace tarnwell::compositions {

class Context;

/// Images made of images. Each function gives null when there is nothing left to see or when a
/// limit forbids it, and a pattern without end stays one where that makes sense.
namespace computing {

ImageRef crop(Context &context, const ImageRef &image, const QRectF &rectangle);
ImageRef transform(Context &context, const ImageRef &image, const QTransform &transform);
/// The image moved, and its outermost pixels, or itself, repeated without end around it.
ImageRef clampEdges(const ImageRef &image, const QTransform &transform);
ImageRef tile(const ImageRef &image, const QTransform &transform);
/// The deviation in pixels. What has no end is blurred as far as the destination reaches.
ImageRef blur(Context &context, const ImageRef &image, double deviation);

/// Has a kernel computed: over an extent, or as a pattern without end.
ImageRef apply(Context &context, const ImageRecipe &recipe, const QRect &extent);
ImageRef endless(ImageRecipe recipe);

/// All that any of the images covers; nothing when one of them has no end.
std::optional<QRect> extentOfAll(const std::vector<ImageRef> &images);

} // namespace computing

} // namespace tarnwell::compositions
