#include "compositions/opengl/Renderer.h"

#include "compositions/drawing/Geometry.h"
#include "compositions/opengl/OpenGL.h"
#include "compositions/opengl/Shaders.h"

#include <cstddef>

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
};

void describeVertices()
{
    const auto attribute = [](unsigned index, int size, size_t offset) {
        glEnableVertexAttribArray(index);
        glVertexAttribPointer(index, size, GL_FLOAT, GL_FALSE, sizeof(PackedVertex),
                              reinterpret_cast<const void *>(offset));
    };
    attribute(0, 4, offsetof(PackedVertex, position));
    attribute(1, 2, offsetof(PackedVertex, texture));
    attribute(2, 4, offsetof(PackedVertex, color));
}

void fillBuffer(const std::vector<PackedVertex> &vertices)
{
    glBufferData(GL_ARRAY_BUFFER, qptrdiff(vertices.size() * sizeof(PackedVertex)), vertices.data(),
                 GL_STREAM_DRAW);
}

} // namespace

bool Renderer::initialize(QString *error)
{
    m_program = buildProgram(error);
    if (m_program == 0) {
        return false;
    }
    const auto uniform = [this](const char *name) { return glGetUniformLocation(m_program, name); };
    m_uniforms.transform = uniform("transform");
    m_uniforms.color = uniform("tint");
    m_uniforms.hasImage = uniform("hasImage");
    m_uniforms.flipImage = uniform("flipImage");
    m_uniforms.hasMask = uniform("hasMask");
    m_uniforms.flipMask = uniform("flipMask");
    glUseProgram(m_program);
    glUniform1i(uniform("image"), imageUnit);
    glUniform1i(uniform("mask"), maskUnit);
    glGenVertexArrays(1, &m_vertexArray);
    glBindVertexArray(m_vertexArray);
    glGenBuffers(1, &m_buffer);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    describeVertices();
    glBindVertexArray(0);
    return true;
}

void Renderer::release()
{
    m_textures.clear();
    m_kernels.clear();
    glDeleteProgram(m_program);
    glDeleteVertexArrays(1, &m_vertexArray);
    glDeleteBuffers(1, &m_buffer);
    m_program = m_vertexArray = m_buffer = 0;
    m_uploaded.reset();
}

void Renderer::draw(const Frame &frame, unsigned framebuffer, QSize pixels)
{
    m_textures.collect();
    m_kernels.collect();
    glUseProgram(m_program);
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
        drawTarget(target, target.image ? target.pixels : pixels);
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
}

void Renderer::drawTarget(const RenderTarget &target, QSize pixels)
{
    glViewport(0, 0, pixels.width(), pixels.height());
    apply(ClearCommand{});
    for (const Command &command : target.commands) {
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
    if (!bindImage(command.image, imageUnit, m_uniforms.hasImage, m_uniforms.flipImage) ||
        !bindImage(command.mask, maskUnit, m_uniforms.hasMask, m_uniforms.flipMask)) {
        return;
    }
    setState(command);
    glUniform4f(m_uniforms.color, float(command.color.red), float(command.color.green),
                float(command.color.blue), float(command.color.alpha));
    if (command.mesh->primitive == Primitive::Lines) {
        const QMatrix4x4 identity;
        glUniformMatrix4fv(m_uniforms.transform, 1, GL_FALSE, identity.constData());
        if (const int count = uploadLines(command, pixels); count > 0) {
            glDrawArrays(GL_TRIANGLES, 0, count);
        }
        m_uploaded.reset();
        return;
    }
    glUniformMatrix4fv(m_uniforms.transform, 1, GL_FALSE, command.transform.constData());
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
    glUseProgram(m_program);
    glBindVertexArray(m_vertexArray);
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
                          vertex.color});
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
                              corner.color});
        }
    }
    fillBuffer(packed);
    return int(packed.size());
}

} // namespace tarnwell::compositions
