#pragma once

#include "compositions/drawing/Frame.h"

namespace tarnwell::compositions {

/// The horizontal field of view, in degrees. With the eye at the square root of 3 it makes the
/// plane z = 0 exactly two units wide.
inline constexpr double fieldOfView = 60.0;
inline constexpr double eyeDistance = 1.7320508075688772;
inline constexpr double nearPlane = 0.1;
inline constexpr double farPlane = 1000.0;
/// Width of every destination.
inline constexpr double destinationWidth = 2.0;

/// Height of a destination of so many pixels, in units.
double destinationHeight(QSize pixels);
/// Length of one pixel in units.
double unitsPerPixel(QSize pixels);

/// From units to clip coordinates.
QMatrix4x4 projection(QSize pixels);

/// A square of side 1 around the origin that faces the viewer.
MeshRef unitQuad();
/// A ball of diameter 1 around the origin.
MeshRef unitSphere(int slices, int stacks);
/// A square from -1 to 1 in clip coordinates whose colours run from the first to the last stop.
/// Directions: 0 up, 1 right, 2 down, 3 left. Stops beyond 0 and 1 are moved there.
struct GradientStop
{
    double position = 0.0;
    Color color;
};
MeshRef gradientMesh(std::vector<GradientStop> stops, int direction);

/// The rectangle that a line of that width covers: two triangles in clip coordinates, or none when
/// the line lies behind the viewer.
struct ClipVertex
{
    QVector4D position;
    std::array<float, 4> color{};
};
std::vector<ClipVertex> expandLine(ClipVertex from, ClipVertex to, double width, QSize pixels);

} // namespace tarnwell::compositions
