#pragma once

#include "compositions/filters/Kernel.h"

#include <QLatin1StringView>

#include <array>
#include <span>

namespace tarnwell::compositions {

/// What a filter's parameter is, and so which ports it is split into.
enum class ParameterKind : quint8 {
    None, ///< ends the list
    Image,
    Number,
    Color,
    Vector2,
    Vector4,
    Transform
};

struct FilterParameter
{
    QLatin1StringView key = {};
    ParameterKind kind = ParameterKind::None;
    std::array<double, 4> defaults{};
};

/// Which part of the plane a filter's result covers.
enum class FilterExtent : quint8 {
    FirstImage, ///< as much as the first image
    AllImages,  ///< all that any image covers
    Endless,    ///< there is no end
    Special     ///< the filter has a function of its own
};

/// A filter of the standard library of image filters, by its name there. The kernel's arguments are
/// the parameters in their order.
struct FilterDefinition
{
    QLatin1StringView name;
    std::array<FilterParameter, 6> parameters;
    FilterExtent extent = FilterExtent::FirstImage;
    const char *kernel = nullptr;

    /// Translated once.
    KernelRef translatedKernel() const;
};

/// Null for filters that are not supported.
const FilterDefinition *findFilter(QStringView name);
std::span<const FilterDefinition> allFilters();

/// The kernels that filters with functions of their own are made of: a plain copy; copies through
/// two rows of a matrix, of which the second and third go on beyond the edges of the image; one
/// that is so many times smaller; a blur along one axis.
KernelRef copyKernel();
KernelRef transformKernel();
KernelRef tileKernel();
KernelRef clampKernel();
KernelRef shrinkKernel();
KernelRef blurKernel();

} // namespace tarnwell::compositions
