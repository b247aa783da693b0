#pragma once

#include "compositions/drawing/Frame.h"
#include "compositions/opengl/KernelPrograms.h"
#include "compositions/opengl/TextureCache.h"

#include <QString>

#include <stop_token>

namespace tarnwell::compositions {

/// Draws frames with OpenGL 3.3 core, into whatever framebuffer it is told, so that of a
/// widget as well as one off screen. Every function wants the same context to be current.
class Renderer
{
public:
    Renderer() = default;
    Q_DISABLE_COPY_MOVE(Renderer)

    /// False, with the reason, when the context can't do what is needed.
    bool initialize(QString *error = nullptr);
    bool isInitialized() const { return m_plain.name != 0; }

    /// The result is opaque: what the frame leaves free is black. Changes the state of the context
    /// and leaves the framebuffer bound. When somebody asks for it, the rest is left out.
    void draw(const Frame &frame, unsigned framebuffer, QSize pixels, std::stop_token stop = {});

    /// Deletes all that it has in the context, for example before a widget gets another one.
    void release();

    const TextureCache &textures() const { return m_textures; }

private:
    void drawTarget(const RenderTarget &target, QSize pixels, const std::stop_token &stop);
    void apply(const ClearCommand &command);
    void apply(const DrawCommand &command, QSize pixels);
    void apply(const KernelCommand &command, QSize pixels);
    void setState(const DrawCommand &command);
    /// False when the image has nothing to show.
    bool bindImage(const ImageRef &image, unsigned unit, int hasUniform, int flipUniform);
    void upload(const Mesh &mesh);
    int uploadLines(const DrawCommand &command, QSize pixels);

    /// A program with the places of its uniforms.
    struct Program
    {
        unsigned name = 0;
        int transform = -1;
        int color = -1;
        int hasImage = -1;
        int flipImage = -1;
        int hasMask = -1;
        int flipMask = -1;
    };

    static Program describe(unsigned name);
    /// The program for a command, made current with all that it needs besides images.
    const Program &use(const DrawCommand &command);
    void shine(const DrawCommand &command);

    TextureCache m_textures;
    KernelPrograms m_kernels;
    Program m_plain;
    Program m_lit; ///< built when the first light shines
    unsigned m_vertexArray = 0;
    unsigned m_buffer = 0;
    MeshRef m_uploaded;
    LightingRef m_shining; ///< whose lights the program knows already
};

} // namespace tarnwell::compositions
