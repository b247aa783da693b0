#include "compositions/opengl/Renderer.h"

#include "compositions/drawing/Geometry.h"
#include "compositions/opengl/OpenGL.h"
#include "compositions/opengl/Shaders.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace tarnwell::compositions {

namespace {

constexpr unsigned imageUnit = 0;
constexpr unsigned maskUnit = 1;

/// What a vertex is on its way to the shader; lines come in clip coordinates with a fourth one.
struct PackedVertex
{
    std::array<float, 4> position;
    std::array<float, 2> texture;
    std::array<float, 4> color;
    std::array<float, 3> normal;
};

void describeVertices()
{
    const auto attribute = [](unsigned index, int size, size_t offset) {
        glEnableVertexAttribArray(index);
        // OpenGL takes an offset into the buffer for a pointer.
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        const auto *place = reinterpret_cast<const void *>(offset);
        glVertexAttribPointer(index, size, GL_FLOAT, GL_FALSE, sizeof(PackedVertex), place);
    };
    attribute(0, 4, offsetof(PackedVertex, position));
    attribute(1, 2, offsetof(PackedVertex, texture));
    attribute(2, 4, offsetof(PackedVertex, color));
    attribute(3, 3, offsetof(PackedVertex, normal));
}

void fillBuffer(const std::vector<PackedVertex> &vertices)
{
    glBufferData(GL_ARRAY_BUFFER, qptrdiff(vertices.size() * sizeof(PackedVertex)), vertices.data(),
                 GL_STREAM_DRAW);
}

} // namespace

bool Renderer::initialize(QString *error)
{
    const unsigned program = buildPlainProgram(error);
    if (program == 0) {
        return false;
    }
    m_plain = describe(program);
    glGenVertexArrays(1, &m_vertexArray);
    glBindVertexArray(m_vertexArray);
    glGenBuffers(1, &m_buffer);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    describeVertices();
    glBindVertexArray(0);
    return true;
}

Renderer::Program Renderer::describe(unsigned name)
{
    const auto uniform = [name](const char *text) { return glGetUniformLocation(name, text); };
    glUseProgram(name);
    glUniform1i(uniform("image"), imageUnit);
    glUniform1i(uniform("mask"), maskUnit);
    return {.name = name,
            .transform = uniform("transform"),
            .color = uniform("tint"),
            .hasImage = uniform("hasImage"),
            .flipImage = uniform("flipImage"),
            .hasMask = uniform("hasMask"),
            .flipMask = uniform("flipMask")};
}

void Renderer::release()
{
    m_textures.clear();
    m_kernels.clear();
    glDeleteProgram(m_plain.name);
    glDeleteProgram(m_lit.name);
    glDeleteVertexArrays(1, &m_vertexArray);
    glDeleteBuffers(1, &m_buffer);
    m_plain = m_lit = {};
    m_vertexArray = m_buffer = 0;
    m_uploaded.reset();
    m_shining.reset();
}

void Renderer::draw(const Frame &frame, unsigned framebuffer, QSize pixels, std::stop_token stop)
{
    m_textures.collect();
    m_kernels.collect();
    glBindVertexArray(m_vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_STENCIL_TEST);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    for (const RenderTarget &target : frame.targets) {
        unsigned destination = framebuffer;
        if (target.image) {
            const Texture *texture = m_textures.target(target.image);
            if (texture == nullptr) {
                continue;
            }
            destination = texture->framebuffer;
        }
        glBindFramebuffer(GL_FRAMEBUFFER, destination);
        drawTarget(target, target.image ? target.pixels : pixels, stop);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    // Whatever the patches did to the opacity, nothing shines through.
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glBindVertexArray(0);
    glUseProgram(0);
    m_uploaded.reset();
    m_shining.reset();
}

void Renderer::drawTarget(const RenderTarget &target, QSize pixels, const std::stop_token &stop)
{
    glViewport(0, 0, pixels.width(), pixels.height());
    apply(ClearCommand{});
    // Commands are only noted down at first. Whoever wants to stop early must not let them pile up.
    constexpr int mostPending = 256;
    int pending = 0;
    for (const Command &command : target.commands) {
        if (stop.stop_requested()) {
            return;
        }
        if (stop.stop_possible() && ++pending % mostPending == 0) {
            glFinish();
        }
        if (const auto *clear = std::get_if<ClearCommand>(&command)) {
            apply(*clear);
        } else if (const auto *kernel = std::get_if<KernelCommand>(&command)) {
            apply(*kernel, pixels);
        } else {
            apply(std::get<DrawCommand>(command), pixels);
        }
    }
}

void Renderer::apply(const ClearCommand &command)
{
    const auto alpha = float(command.color.alpha);
    glClearColor(float(command.color.red) * alpha, float(command.color.green) * alpha,
                 float(command.color.blue) * alpha, alpha);
    glDepthMask(GL_TRUE);
    glClear((command.clearsColor ? GL_COLOR_BUFFER_BIT : 0U) |
            (command.clearsDepth ? GL_DEPTH_BUFFER_BIT : 0U));
}

void Renderer::apply(const DrawCommand &command, QSize pixels)
{
    const Program &program = use(command);
    if (!bindImage(command.image, imageUnit, program.hasImage, program.flipImage) ||
        !bindImage(command.mask, maskUnit, program.hasMask, program.flipMask)) {
        return;
    }
    setState(command);
    glUniform4f(program.color, float(command.color.red), float(command.color.green),
                float(command.color.blue), float(command.color.alpha));
    if (command.mesh->primitive == Primitive::Lines) {
        const QMatrix4x4 identity;
        glUniformMatrix4fv(program.transform, 1, GL_FALSE, identity.constData());
        if (const int count = uploadLines(command, pixels); count > 0) {
            glDrawArrays(GL_TRIANGLES, 0, count);
        }
        m_uploaded.reset();
        return;
    }
    glUniformMatrix4fv(program.transform, 1, GL_FALSE, command.transform.constData());
    if (m_uploaded != command.mesh) {
        upload(*command.mesh);
        m_uploaded = command.mesh;
    }
    glDrawArrays(command.mesh->primitive == Primitive::TriangleStrip ? GL_TRIANGLE_STRIP
                                                                     : GL_TRIANGLES,
                 0, int(command.mesh->vertices.size()));
}

void Renderer::apply(const KernelCommand &command, QSize pixels)
{
    m_kernels.compute(command, pixels, m_textures);
    glBindVertexArray(m_vertexArray);
}

const Renderer::Program &Renderer::use(const DrawCommand &command)
{
    if (command.lighting && m_lit.name == 0) {
        m_lit = describe(buildLitProgram(nullptr));
    }
    if (!command.lighting || m_lit.name == 0) {
        glUseProgram(m_plain.name);
        return m_plain;
    }
    glUseProgram(m_lit.name);
    shine(command);
    return m_lit;
}

void Renderer::shine(const DrawCommand &command)
{
    const auto place = [this](const char *text) { return glGetUniformLocation(m_lit.name, text); };
    glUniformMatrix4fv(place("model"), 1, GL_FALSE, command.model.constData());
    glUniformMatrix3fv(place("normalModel"), 1, GL_FALSE, command.model.normalMatrix().constData());
    if (m_shining == command.lighting) {
        return;
    }
    m_shining = command.lighting;
    const Lighting &lighting = *command.lighting;
    const size_t count = std::min<size_t>(lighting.lights.size(), mostLights);
    glUniform1i(place("lights"), int(count));
    for (size_t i = 0; i < count; ++i) {
        const Light &light = lighting.lights[i];
        const std::string index = '[' + std::to_string(i) + ']';
        glUniform3f(place(("lightColor" + index).c_str()), float(light.color.red),
                    float(light.color.green), float(light.color.blue));
        glUniform4f(place(("lightPlace" + index).c_str()), light.position.x(), light.position.y(),
                    light.position.z(), float(light.attenuation));
    }
    glUniform3f(place("ambient"), float(lighting.ambient.red), float(lighting.ambient.green),
                float(lighting.ambient.blue));
    glUniform2f(place("gloss"), float(lighting.specular), float(lighting.shininess));
    glUniform1f(place("twoSides"), lighting.hasTwoSides ? 1.0F : 0.0F);
}

void Renderer::setState(const DrawCommand &command)
{
    if (command.blending == Blending::Replace) {
        glDisable(GL_BLEND);
    } else {
        glEnable(GL_BLEND);
        const bool adds = command.blending == Blending::Add;
        glBlendFuncSeparate(command.blending == Blending::Alpha ? GL_SRC_ALPHA : GL_ONE,
                            adds ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA, GL_ONE,
                            adds ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA);
    }
    if (command.depth == DepthMode::None) {
        glDisable(GL_DEPTH_TEST);
    } else {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
    }
    glDepthMask(command.depth == DepthMode::ReadWrite ? GL_TRUE : GL_FALSE);
    if (command.culling == Culling::Back || command.culling == Culling::Front) {
        glEnable(GL_CULL_FACE);
        glCullFace(command.culling == Culling::Back ? GL_BACK : GL_FRONT);
    } else {
        glDisable(GL_CULL_FACE);
    }
}

bool Renderer::bindImage(const ImageRef &image, unsigned unit, int hasUniform, int flipUniform)
{
    glUniform1f(hasUniform, image ? 1.0F : 0.0F);
    if (!image) {
        return true;
    }
    glActiveTexture(GL_TEXTURE0 + unit);
    const Texture *texture = m_textures.find(image);
    if (texture == nullptr) {
        return false;
    }
    glBindTexture(GL_TEXTURE_2D, texture->name);
    glUniform1f(flipUniform, texture->isTopDown ? 1.0F : 0.0F);
    return true;
}

void Renderer::upload(const Mesh &mesh)
{
    std::vector<PackedVertex> packed;
    packed.reserve(mesh.vertices.size());
    for (const Vertex &vertex : mesh.vertices) {
        packed.push_back({{vertex.position[0], vertex.position[1], vertex.position[2], 1.0F},
                          vertex.texture,
                          vertex.color,
                          vertex.normal});
    }
    fillBuffer(packed);
}

int Renderer::uploadLines(const DrawCommand &command, QSize pixels)
{
    std::vector<PackedVertex> packed;
    const auto &vertices = command.mesh->vertices;
    const auto clip = [&command](const Vertex &vertex) {
        return ClipVertex{command.transform * QVector4D(vertex.position[0], vertex.position[1],
                                                        vertex.position[2], 1.0F),
                          vertex.color};
    };
    for (size_t i = 0; i + 1 < vertices.size(); i += 2) {
        for (const ClipVertex &corner :
             expandLine(clip(vertices[i]), clip(vertices[i + 1]), command.lineWidth, pixels)) {
            packed.push_back({{corner.position.x(), corner.position.y(), corner.position.z(),
                               corner.position.w()},
                              {},
                              corner.color,
                              {}});
        }
    }
    fillBuffer(packed);
    return int(packed.size());
}

} // namespace tarnwell::compositions
