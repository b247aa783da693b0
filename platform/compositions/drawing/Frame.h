#pragma once

#include "compositions/model/Value.h"

#include <QMatrix4x4>
#include <QPoint>
#include <QSize>
#include <QVector3D>

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
    std::array<float, 3> normal{0.0F, 0.0F, 1.0F};      ///< away from the surface
};

enum class Primitive : quint8 { Triangles, TriangleStrip, Lines };

struct Mesh
{
    Primitive primitive = Primitive::Triangles;
    std::vector<Vertex> vertices;
};
using MeshRef = std::shared_ptr<const Mesh>;

struct Light
{
    Color color;
    QVector3D position; ///< in the space of the destination, in units
    double attenuation = 0.0;
};

/// The lights that shine on a part of a composition, and how its surfaces answer.
struct Lighting
{
    Color ambient;
    double specular = 0.0;
    double shininess = 0.0;
    bool hasTwoSides = false; ///< whether backs are lit like fronts
    std::vector<Light> lights;
};
using LightingRef = std::shared_ptr<const Lighting>;

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
    LightingRef lighting;   ///< null for what shows its colour as it is
    QMatrix4x4 model;       ///< of what is lit: from the mesh's coordinates to the lights' space
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
