#include "compositions/drawing/Geometry.h"

#include <QVector2D>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarnwell::compositions {

namespace {

std::array<float, 4> components(const Color &color)
{
    return {float(color.red), float(color.green), float(color.blue), float(color.alpha)};
}

Vertex sphereVertex(double longitude, double latitude)
{
    const double around = longitude * 2.0 * std::numbers::pi;
    const double up = (latitude - 0.5) * std::numbers::pi;
    Vertex vertex;
    vertex.position = {float(0.5 * std::cos(up) * std::sin(around)), float(0.5 * std::sin(up)),
                       float(0.5 * std::cos(up) * std::cos(around))};
    vertex.texture = {float(longitude), float(latitude)};
    for (size_t i = 0; i < vertex.normal.size(); ++i) {
        vertex.normal[i] = 2.0F * vertex.position[i];
    }
    return vertex;
}

} // namespace

double destinationHeight(QSize pixels)
{
    return pixels.width() > 0 ? destinationWidth * pixels.height() / pixels.width() : 0.0;
}

double unitsPerPixel(QSize pixels)
{
    return pixels.width() > 0 ? destinationWidth / pixels.width() : 0.0;
}

QMatrix4x4 projection(QSize pixels)
{
    const double halfWidth = nearPlane * std::tan(fieldOfView / 2.0 * std::numbers::pi / 180.0);
    const double halfHeight = halfWidth * destinationHeight(pixels) / destinationWidth;
    QMatrix4x4 matrix;
    matrix.frustum(float(-halfWidth), float(halfWidth), float(-halfHeight), float(halfHeight),
                   float(nearPlane), float(farPlane));
    matrix.translate(0.0F, 0.0F, float(-eyeDistance));
    return matrix;
}

MeshRef unitQuad()
{
    static const MeshRef quad = [] {
        auto mesh = std::make_shared<Mesh>();
        mesh->primitive = Primitive::TriangleStrip;
        for (const auto &[x, y] :
             {std::pair{0.0F, 0.0F}, {1.0F, 0.0F}, {0.0F, 1.0F}, {1.0F, 1.0F}}) {
            mesh->vertices.push_back({.position = {x - 0.5F, y - 0.5F, 0.0F}, .texture = {x, y}});
        }
        return mesh;
    }();
    return quad;
}

MeshRef unitSphere(int slices, int stacks)
{
    slices = std::clamp(slices, 3, 256);
    stacks = std::clamp(stacks, 2, 256);
    auto mesh = std::make_shared<Mesh>();
    mesh->vertices.reserve(size_t(slices) * size_t(stacks) * 6);
    for (int stack = 0; stack < stacks; ++stack) {
        for (int slice = 0; slice < slices; ++slice) {
            const auto corner = [&](int right, int up) {
                return sphereVertex(double(slice + right) / slices, double(stack + up) / stacks);
            };
            for (const auto &[right, up] :
                 {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}) {
                mesh->vertices.push_back(corner(right, up));
            }
        }
    }
    return mesh;
}

MeshRef gradientMesh(std::vector<GradientStop> stops, int direction)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->primitive = Primitive::TriangleStrip;
    if (stops.empty()) {
        return mesh;
    }
    double least = 0.0;
    for (GradientStop &stop : stops) {
        // A stop that stands before its predecessor begins where that one ends.
        least = stop.position = std::clamp(stop.position, least, 1.0);
    }
    if (stops.front().position > 0.0) {
        stops.insert(stops.begin(), {0.0, stops.front().color});
    }
    if (stops.back().position < 1.0) {
        stops.push_back({1.0, stops.back().color});
    }
    const bool isHorizontal = direction == 1 || direction == 3;
    const float sign = direction == 2 || direction == 3 ? -1.0F : 1.0F;
    for (const GradientStop &stop : stops) {
        const float along = sign * float(stop.position * 2.0 - 1.0);
        for (const float across : {-1.0F, 1.0F}) {
            Vertex vertex;
            vertex.position = {isHorizontal ? along : across, isHorizontal ? across : along, 0.0F};
            vertex.color = components(stop.color);
            mesh->vertices.push_back(vertex);
        }
    }
    return mesh;
}

std::vector<ClipVertex> expandLine(ClipVertex from, ClipVertex to, double width, QSize pixels)
{
    // The part behind the viewer has no place on the screen: cut it off before dividing.
    constexpr float leastW = float(nearPlane);
    if (from.position.w() < leastW && to.position.w() < leastW) {
        return {};
    }
    if (from.position.w() < leastW || to.position.w() < leastW) {
        ClipVertex &behind = from.position.w() < to.position.w() ? from : to;
        const ClipVertex &inFront = from.position.w() < to.position.w() ? to : from;
        const float t =
            (leastW - behind.position.w()) / (inFront.position.w() - behind.position.w());
        behind.position += (inFront.position - behind.position) * t;
        for (size_t i = 0; i < behind.color.size(); ++i) {
            behind.color[i] += (inFront.color[i] - behind.color[i]) * t;
        }
    }
    const QVector2D half(float(pixels.width()) / 2.0F, float(pixels.height()) / 2.0F);
    const QVector2D start = from.position.toVector2D() / from.position.w() * half;
    const QVector2D end = to.position.toVector2D() / to.position.w() * half;
    QVector2D along = end - start;
    if (along.lengthSquared() == 0.0F) {
        along = QVector2D(1.0F, 0.0F);
    }
    along.normalize();
    const QVector2D aside = QVector2D(-along.y(), along.x()) * float(width / 2.0) / half;
    const auto corner = [&aside](const ClipVertex &vertex, float side) {
        ClipVertex moved = vertex;
        moved.position += QVector4D(aside * side * vertex.position.w(), 0.0F, 0.0F);
        return moved;
    };
    return {corner(from, -1), corner(to, -1), corner(to, 1),
            corner(from, -1), corner(to, 1),  corner(from, 1)};
}

} // namespace tarnwell::compositions
