#pragma once

#include "compositions/model/Value.h"

#include <QMatrix4x4>
#include <QPoint>
#include <QSize>

#include <array>
#include <memory>
#include <variant>
#include <vector>

namespace tarnwell::compositions {

class Kernel;

/// How what is drawn joins what is there. The numbers are those of files.
enum class Blending : quint8 { Replace, Over, Add, Alpha };
enum class DepthMode : quint8 { None, ReadWrite, ReadOnly };
enum class Culling : quint8 { None, Back, Front, Own };

struct Vertex
{
    std::array<float, 3> position{};
    std::array<float, 2> texture{};                     ///< from the lower left corner of the image
    std::array<float, 4> color{1.0F, 1.0F, 1.0F, 1.0F}; ///< not premultiplied
};

enum class Primitive : quint8 { Triangles, TriangleStrip, Lines };

struct Mesh
{
    Primitive primitive = Primitive::Triangles;
    std::vector<Vertex> vertices;
};
using MeshRef = std::shared_ptr<const Mesh>;

struct ClearCommand
{
    Color color;
    bool clearsColor = true;
    bool clearsDepth = true;
};

/// A mesh with everything that decides how it looks.
struct DrawCommand
{
    MeshRef mesh;
    QMatrix4x4 transform; ///< from the mesh's coordinates to clip coordinates
    Color color;          ///< multiplies the vertices' own
    ImageRef image;       ///< plain colour without
    ImageRef mask;        ///< its brightness multiplies the opacity
    Blending blending = Blending::Over;
    DepthMode depth = DepthMode::None;
    Culling culling = Culling::None;
    float lineWidth = 1.0F; ///< in pixels
};

/// Computes every pixel of a target, which starts at a place in the plane of its images: their
/// lower left corners need not meet.
struct KernelCommand
{
    std::shared_ptr<const Kernel> kernel;
    std::vector<ImageRef> images; ///< in the order of the samplers; null for a transparent one
    std::vector<std::array<float, 4>> arguments; ///< of all arguments, those of samplers unused
    QPoint origin;
};

using Command = std::variant<ClearCommand, DrawCommand, KernelCommand>;

/// Something to draw into: an image, or the destination of the frame. Each starts out transparent,
/// with nothing in its depth buffer.
struct RenderTarget
{
    ImageRef image; ///< null for the destination
    QSize pixels;
    std::vector<Command> commands;
};

/// All that one evaluation wants drawn. A target stands before those that use its image; the
/// destination is the last one.
struct Frame
{
    std::vector<RenderTarget> targets;
};

} // namespace tarnwell::compositions
